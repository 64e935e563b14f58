#include "store/sorting/Ordering.h"

#include <gtest/gtest.h>
#include <unicode/ucol.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <random>

#include "store/sorting/NameSort.h"

namespace store {
namespace {

int signOf(int order) {
    return (order > 0) - (order < 0);
}

TEST(Ordering, ComparesByTheLocalesRules) {
    const std::tuple<const char*, const char*, const char*, int> table[] = {
        {"en_US", "Alpha", "alpha", 0},
        {"en_US", "alpha", "beta", -1},
        {"en_US", "Mail", "maps", -1},
        {"en_US", "Example.net", "example.net", 0},
        {"C.UTF-8", "beta", "Alpha", 1},
        {"POSIX", "a", "B", -1},
        {"en_US", "e", "\u00E9", -1},
        {"en_US", "\u00E9", "f", -1},
        {"en_US", "\u00E9", "e\u0301", 0},
        {"de_DE.UTF-8", "\u00E4", "z", -1},
        {"sv_SE.UTF-8", "\u00E4", "z", 1},
        {"cs_CZ", "ch", "h", 1},
        {"en_US", "ch", "h", -1},
        {"sr_RS.UTF-8", "lz", "lj", 1},
        {"sr_RS.UTF-8@latin", "lz", "lj", -1},
        {"sr_RS@latin", "lz", "lj", -1},
        {"de_DE.UTF-8@euro", "\u00E4", "z", -1},
        {"", "a", "A", 0},
        {"nonsense", "a", "B", -1},
        {"en_US", "", "a", -1},
        {"en_US", "*example.net", "example.net", -1},
    };
    for (const auto& [locale, a, b, sign] : table) {
        NameOrder order(locale);
        EXPECT_EQ(signOf(order.compare(a, b)), sign) << locale << ": " << a << ", " << b;
        EXPECT_EQ(signOf(order.sortKey(a).compare(order.sortKey(b))), sign) << locale << ": " << a << ", " << b;
    }
}

TEST(Ordering, SortsAppsByName) {
    std::vector<AppInfo> apps{{"1", "maps"},       {"2", "Mail"}, {"3", "MAPS"},
                              {"4", "\u00C4pfel"}, {"5", ""},     {"6", "Maps"}};
    alphabeticAppInfoSort(apps, NameOrder("de_DE"));
    std::string sorted;
    for (const AppInfo& app : apps) sorted += app.bundleIdentifier;
    EXPECT_EQ(sorted, "542136");
}

std::vector<std::string> randomNames(std::size_t count, const std::vector<std::string>& beginnings) {
    std::mt19937 random(20130504);
    const std::string letters = "aAbBcChHdDzZsSlLjJnNyYwWvVgG019.-*:_ \t\x01";
    auto pick = [&](std::size_t limit) { return static_cast<std::size_t>(random()) % limit; };
    std::vector<std::string> names;
    while (names.size() < count) {
        std::string name = beginnings[pick(beginnings.size())];
        for (std::size_t length = pick(14); length > 0; --length) name += letters[pick(letters.size())];
        // An accent, another script, and what makes no difference.
        if (pick(8) == 0) name += std::array{"\u00E9", "\u4E2D\u0301", "\u00AD"}[pick(3)];
        names.push_back(name);
    }
    return names;
}

// Some of the numbers below `end`, in no order.
std::vector<std::uint32_t> shuffledNumbers(std::size_t end) {
    std::vector<std::uint32_t> numbers(end);
    std::iota(numbers.begin(), numbers.end(), 0u);
    std::shuffle(numbers.begin(), numbers.end(), std::mt19937(4));
    numbers.resize(end - end / 10);
    return numbers;
}

void expectSortedLikeTheCollator(const std::vector<std::string>& names, const NameOrder& order) {
    std::vector<std::uint32_t> expected = shuffledNumbers(names.size());
    std::vector<std::uint32_t> sorted = expected;
    std::stable_sort(expected.begin(), expected.end(),
                     [&](auto a, auto b) { return order.compare(names[a], names[b]) < 0; });
    sortByName(
        sorted, [&](std::uint32_t name) -> std::string_view { return names[name]; }, order);
    EXPECT_EQ(sorted, expected);
}

// In every locale there is, sorting by the cheapest keys gives what comparing by the full rules gives.
TEST(Ordering, SortsLikeTheCollatorInEveryLocale) {
    const std::vector<std::string> names = randomNames(1200, {""});  // more than are compared one by one
    int cheap = 0;
    for (int32_t i = 0, count = ucol_countAvailable(); i < count; ++i) {
        SCOPED_TRACE(ucol_getAvailable(i));
        NameOrder order(ucol_getAvailable(i));
        expectSortedLikeTheCollator(names, order);
        cheap += order.asciiOrder() != nullptr;
    }
    EXPECT_GT(cheap, 50);
}

// So many that every processor gets some, and so alike that most are told apart far behind their beginnings. Some are
// in order, but compare as the same, for which they are not shown in that order.
TEST(Ordering, SortsManyLikeTheCollator) {
    auto names = randomNames(120'000, {"", "www.", "*static.images.", "aaaaaaaaaaaaaaaaaaaaaaaa"});
    for (int i = 0; i < 2000; ++i) names.push_back((i % 2 ? "NAME" : "name") + std::to_string(1000 + i / 2));
    expectSortedLikeTheCollator(names, NameOrder("en_US"));
}

}  // namespace
}  // namespace store
