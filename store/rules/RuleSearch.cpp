#include "store/rules/RuleSearch.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "store/parallel/Parts.h"
#include "store/rules/PoolMarks.h"
#include "store/text/Ascii.h"
#include "store/text/Search.h"

namespace store {

namespace {

constexpr std::size_t worthwhile = 50'000;  // rules, for a thread of their own

// Looks for one lowered text in the texts of a pool, where each is ASCII or lowered already; fastest in the order in
// which they lie there.
class Finder {
public:
    Finder(std::string_view pool, std::string_view wanted)
        : pool_(pool), wanted_(wanted), starts_(PoolMarks::ofStarts(pool, wanted)) {}

    bool isIn(std::string_view text) {
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
    LargeVector<std::uint8_t> isOther(storage.size());
    inParts(isOther.size(), worthwhile, [&](std::size_t begin, std::size_t end) {
        PoolMarks others = PoolMarks::ofOtherThanAscii(pool);
        for (std::size_t number = begin; number < end; ++number) {
            const std::string_view rule = storage.rule(static_cast<RuleStorage::Number>(number));
            isOther[number] = others.any(static_cast<std::size_t>(rule.data() - pool.data()), rule.size());
        }
    });
    for (RuleStorage::Number number = 0; number < storage.size(); ++number) {
        if (!isOther[number]) continue;
        const std::string_view rule = storage.rule(number);
        others_.push_back(number);
        appendLoweredForSearch(rule, lowered_);
        ends_.push_back(lowered_.size());
    }
}

// One search, in phases: match the rules by their numbers, put down the rows that match.
class RuleSearch::Pass {
public:
    using Number = RuleStorage::Number;

    // What is wanted stays there as long as this.
    Pass(const RuleSearch& search, const std::string& wanted, std::span<const Number> rows)
        : search_(search), rows_(rows), wanted_(wanted), matches_(search.storage_->size()), positions_(rows.size()) {}

    LargeVector<std::uint32_t> run() {
        const auto match = [this](std::size_t begin, std::size_t end) { matchRules(begin, end); };
        const auto put = [this](std::size_t begin, std::size_t end) { putRows(begin, end); };
        inPhases(partsWorthwhile(matches_.size(), worthwhile), {{matches_.size(), match}, {rows_.size(), put}});
        closeGaps();
        return std::move(positions_);
    }

private:
    // The matching rows of a part of them, put down from the place of its first row on.
    struct Run {
        std::size_t begin;
        std::size_t size;
        bool operator<(const Run& other) const { return begin < other.begin; }
    };

    void matchRules(std::size_t begin, std::size_t end) {
        Finder inRules(search_.storage_->pool(), wanted_);
        for (std::size_t number = begin; number < end; ++number)
            matches_[number] = inRules.isIn(search_.storage_->rule(static_cast<Number>(number)));
        const auto& others = search_.others_;
        Finder inLowered(search_.lowered_, wanted_);
        const auto first = std::lower_bound(others.begin(), others.end(), begin);
        for (auto other = first; other != others.end() && *other < end; ++other)
            matches_[*other] = inLowered.isIn(search_.lowered(static_cast<std::size_t>(other - others.begin())));
    }

    // Every row is put down, and stays when it matches: which do cannot be foretold, as a branch would have to.
    void putRows(std::size_t begin, std::size_t end) {
        std::size_t next = begin;
        for (std::size_t row = begin; row < end; ++row) {
            positions_[next] = static_cast<std::uint32_t>(row);
            next += matches_[rows_[row]];
        }
        const std::lock_guard guard(lock_);
        runs_.push_back({begin, next - begin});
    }

    void closeGaps() {
        std::sort(runs_.begin(), runs_.end());
        std::size_t size = 0;
        for (const Run& run : runs_) {
            std::copy_n(positions_.data() + run.begin, run.size, positions_.data() + size);
            size += run.size;
        }
        positions_.resize(size);
    }

    const RuleSearch& search_;
    std::span<const Number> rows_;
    const std::string& wanted_;
    LargeVector<std::uint8_t> matches_;  // bytes, since writing a bit takes a branch
    LargeVector<std::uint32_t> positions_;
    std::mutex lock_;  // guards the runs
    std::vector<Run> runs_;
};

LargeVector<std::uint32_t> RuleSearch::search(std::string_view text, std::span<const RuleStorage::Number> rows) const {
    const std::string wanted = loweredForSearch(text);
    if (wanted.empty()) return {};
    return Pass(*this, wanted, rows).run();
}

std::string_view RuleSearch::lowered(std::size_t other) const {
    const std::size_t begin = other == 0 ? 0 : ends_[other - 1];
    return std::string_view(lowered_).substr(begin, ends_[other] - begin);
}

}  // namespace store
