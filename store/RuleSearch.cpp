#include "store/RuleSearch.h"

#include <algorithm>

#include "store/Ascii.h"
#include "store/Parts.h"
#include "store/PoolMarks.h"
#include "store/Search.h"

namespace store {

namespace {

constexpr std::size_t worthwhile = 50'000;  // rules, for a thread of their own

// Looks for one lowered text in the texts of a pool, where each is ASCII or lowered already.
class Finder {
public:
    Finder(std::string_view pool, std::string_view wanted)
        : pool_(pool), wanted_(wanted), starts_(PoolMarks::ofStarts(pool, wanted)) {}

    bool isIn(std::string_view text) const {
        if (text.size() < wanted_.size()) return false;
        const auto begin = static_cast<std::size_t>(text.data() - pool_.data());
        const std::size_t places = text.size() - wanted_.size() + 1;
        if (wanted_.size() <= PoolMarks::wholeSize) return starts_.any(begin, places);
        return starts_.any(begin, places, [this](std::size_t at) { return standsAt(at); });
    }

private:
    bool standsAt(std::size_t at) const {
        return std::equal(wanted_.begin(), wanted_.end(), pool_.begin() + static_cast<std::ptrdiff_t>(at),
                          [](char wanted, char c) { return wanted == asciiLower(c); });
    }

    std::string_view pool_;
    std::string_view wanted_;
    PoolMarks starts_;
};

}  // namespace

RuleSearch::RuleSearch(const RuleStorage& storage) : storage_(&storage) {
    const std::string_view pool = storage.pool();
    const PoolMarks others = PoolMarks::ofOtherThanAscii(pool);
    for (RuleStorage::Number number = 0; number < storage.size(); ++number) {
        const std::string_view rule = storage.rule(number);
        if (!others.any(static_cast<std::size_t>(rule.data() - pool.data()), rule.size())) continue;
        others_.push_back(number);
        appendLoweredForSearch(rule, lowered_);
        ends_.push_back(lowered_.size());
    }
}

LargeVector<std::uint8_t> RuleSearch::search(std::string_view text) const {
    const std::string wanted = loweredForSearch(text);
    if (wanted.empty()) return LargeVector<std::uint8_t>(storage_->size(), 0);
    LargeVector<std::uint8_t> matches(storage_->size());
    const Finder inRules(storage_->pool(), wanted);
    inParts(matches.size(), worthwhile, [&](std::size_t begin, std::size_t end) {
        for (std::size_t number = begin; number < end; ++number)
            matches[number] = inRules.isIn(storage_->rule(static_cast<RuleStorage::Number>(number)));
    });
    const Finder inLowered(lowered_, wanted);
    for (std::size_t other = 0; other < others_.size(); ++other)
        matches[others_[other]] = inLowered.isIn(lowered(other));
    return matches;
}

std::string_view RuleSearch::lowered(std::size_t other) const {
    const std::size_t begin = other == 0 ? 0 : ends_[other - 1];
    return std::string_view(lowered_).substr(begin, ends_[other] - begin);
}

}  // namespace store
