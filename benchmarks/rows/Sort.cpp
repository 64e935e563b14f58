#include <unicode/ucol.h>

#include <algorithm>
#include <memory>
#include <numeric>

#include "benchmarks/Figures.h"
#include "benchmarks/Format.h"
#include "benchmarks/Texts.h"
#include "benchmarks/rows/Subjects.h"
#include "store/Schema.h"
#include "store/rules/RuleList.h"
#include "store/sorting/Ordering.h"

namespace bench {

namespace {

using Texts = std::vector<std::string>;

store::RuleList listOf(const Texts& texts) {
    store::Array entries;
    entries.reserve(texts.size());
    for (const std::string& text : texts) {
        store::Dictionary entry;
        entry.set(store::keys::rule, store::Value(text));
        entries.emplace_back(std::move(entry));
    }
    const store::Value array(std::move(entries));
    return store::RuleList::load(&array);
}

// What the list holds in its order, as positions in the texts that it was made of, are compared through their texts:
// all of them differ.
bool isInOrder(const store::RuleList& list, const Texts& texts, const std::vector<std::uint32_t>& order) {
    if (list.size() != order.size()) return false;
    for (std::size_t position = 0; position < order.size(); ++position) {
        if (list.rule(position) != texts[order[position]]) return false;
    }
    return true;
}

void sortWithIcu(std::vector<std::uint32_t>& order, const Texts& texts, const char* locale) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UCollator, void (*)(UCollator*)> collator(ucol_open(locale, &status), ucol_close);
    ucol_setStrength(collator.get(), UCOL_SECONDARY);
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        return ucol_strcollUTF8(collator.get(), texts[a].data(), static_cast<int32_t>(texts[a].size()), texts[b].data(),
                                static_cast<int32_t>(texts[b].size()), &status) == UCOL_LESS;
    });
}

Row compare(const std::string& work, const Texts& texts, const char* locale, double goal) {
    std::vector<std::uint32_t> order(texts.size());
    bool isSame = true;
    const Figures figures = medianOfRounds({[&] {
        store::RuleList list = listOf(texts);
        const double ours = secondsOf([&] { list.sort(store::RuleOrder::name, store::NameOrder(locale)); });
        const double theirs = secondsOf([&] { sortWithIcu(order, texts, locale); });
        isSame = isSame && isInOrder(list, texts, order);
        return Figures{{"ours", ours}, {"theirs", theirs}};
    }});
    return {
        work + ", " + locale, "ICU in std::stable_sort",        Unit::seconds, figures.at("ours"), figures.at("theirs"),
        fasterBy(goal),       isSame ? "" : "the order differs"};
}

}  // namespace

Rows measureSort(const Conditions& conditions) {
    constexpr std::array locales{"en_US", "de_DE", "cs_CZ", "sv_SE", "ja_JP"};
    const Texts hostTexts = hosts(conditions.size);
    const Texts nameTexts = names(conditions.size);
    const std::string count = countText(conditions.size);
    Rows rows;
    for (const char* locale : locales) rows.push_back(compare("sort " + count + " hosts", hostTexts, locale, 8));
    for (const char* locale : locales) rows.push_back(compare("sort " + count + " names", nameTexts, locale, 1.5));
    return rows;
}

}  // namespace bench
