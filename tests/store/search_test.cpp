#include "store/text/Search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "store/rules/RuleSearch.h"
#include "store/rules/RuleStorage.h"

namespace store {
namespace {

using namespace std::string_literals;
using Positions = LargeVector<std::uint32_t>;

RuleStorage storageOf(const std::vector<std::string>& rules) {
    RuleStorage storage;
    for (const std::string& rule : rules) storage.add(rule, Date());
    return storage;
}

std::vector<RuleStorage::Index> rowsOf(std::size_t count) {
    std::vector<RuleStorage::Index> rows(count);
    std::iota(rows.begin(), rows.end(), 0);
    return rows;
}

TEST(Search, MatchesWithoutRegardToCase) {
    const std::tuple<const char*, const char*, bool> table[] = {
        {"MAIL", "Webmail", true},
        {"mail", "MAIL", true},
        {"exa", "static.example.net", true},
        {"*ex", "*example.net", true},
        {"*ex", "example.net", false},
        {":80", "a.example:80", true},
        {"", "anything", false},
        {"", "", false},
        {"a", "", false},
        {"\u00C4", "b\u00E4r", true},
        {"\u0391\u0392", "x\u03B1\u03B2", true},
        // One spelling with a mark of its own, one without.
        {"caf\u00E9", "CAFE\u0301.example", true},
        {"e\u0301", "\u00C9", true},
        // Lower-casing changes the length: of the Kelvin sign, of a capital I with a dot.
        {"k", "\u212A", true},
        {"\u0130", "xi\u0307", true},
        {"\u1E9E", "\u00DF", true},
        {"ss", "\u00DF", false},
        {"\U00010400", "\U00010428", true},
    };
    for (const auto& [text, field, matches] : table) {
        SCOPED_TRACE(std::string(text) + " in " + field);
        EXPECT_EQ(SearchText(text).matches(field), matches);
        EXPECT_EQ(RuleSearch(storageOf({field})).search(text, rowsOf(1)), Positions(matches, 0));
    }
}

TEST(Search, LowersTextOfAnyLength) {
    std::string dotted, lowered;
    for (int i = 0; i < 1000; ++i) {
        dotted += "\u0130A";
        lowered += "i\u0307a";
    }
    EXPECT_EQ(lowercase(dotted), lowered);
    EXPECT_EQ(lowercase("A\xFF"), "a\uFFFD");
    EXPECT_EQ(lowercase(""), "");

    std::string ascii, plainlyLowered;
    for (char c = 1; c != '\x7F'; ++c) {
        ascii.push_back(c);
        plainlyLowered.push_back(c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c);
        EXPECT_EQ(loweredForSearch(ascii), plainlyLowered);
    }
}

// Texts around the size of a vector register, with what is searched at every place.
TEST(Search, FindsAtEveryPlaceOfAnyLength) {
    std::vector<std::string> rules;
    for (std::size_t size = 1; size <= 34; ++size) {
        for (const std::string_view wanted : {"Q", "qX", "Qxy", "qxyzW", "qqQww"}) {
            for (std::size_t place = 0; place + wanted.size() <= size; ++place)
                rules.push_back(std::string(size, 'x').replace(place, wanted.size(), wanted));
        }
        rules.push_back(std::string(size, 'x') + "\u00E9");
    }
    const RuleStorage storage = storageOf(rules);
    const RuleSearch search(storage);
    const auto rows = rowsOf(rules.size());
    const std::string longest = 'q' + std::string(20, 'x');
    for (const std::string& wanted : {"q"s, "QX"s, "qxy"s, "qxYzw"s, "qqwW"s, "x\u00C9"s, longest}) {
        const Positions found = search.search(wanted, rows);
        for (std::uint32_t i = 0; i < rules.size(); ++i)
            EXPECT_EQ(std::binary_search(found.begin(), found.end(), i), SearchText(wanted).matches(rules[i]))
                << wanted << " in " << rules[i];
    }
}

// A list long enough to be searched by several threads, in another order than it is stored in.
TEST(Search, FindsTheSameInPartsAsOneByOne) {
    constexpr std::size_t count = 200'000;
    std::mt19937 random(7);
    std::vector<std::string> rules;
    for (std::size_t i = 0; i < count; ++i)
        rules.push_back((i % 97 == 0 ? "B\u00DCro" : "host") + std::to_string(random() % 5000) + ".Test" +
                        std::to_string(i));
    const RuleStorage storage = storageOf(rules);
    auto rows = rowsOf(count);
    std::shuffle(rows.begin(), rows.end(), random);
    const RuleSearch search(storage);
    for (const char* wanted : {"t", "st12", "b\u00FCr", ".test7", "nowhere"}) {
        Positions expected;
        const SearchText text(wanted);
        for (std::uint32_t row = 0; row < count; ++row)
            if (text.matches(rules[rows[row]])) expected.push_back(row);
        EXPECT_EQ(search.search(wanted, rows), expected) << wanted;
    }
}

}  // namespace
}  // namespace store
