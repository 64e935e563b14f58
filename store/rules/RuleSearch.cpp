#include "store/rules/RuleSearch.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "store/parallel/Parts.h"
#include "store/text/Ascii.h"
#include "store/text/Search.h"

namespace store {

namespace {

constexpr std::size_t worthwhile = 50'000;  // rules for each thread

// A byte of a lowered pattern, which an ASCII letter of either case matches.
struct Letter {
    explicit Letter(char lowered) : wanted(lowered), caseBit(lowered >= 'a' && lowered <= 'z' ? 0x20 : 0) {}
    Bytes16 matches(Bytes16 bytes) const { return (bytes | caseBit) == wanted; }

    char wanted;
    char caseBit;
};

// Searches texts of a pool, ASCII or lowered, for a lowered, non-empty pattern: sixteen places at a time by its first
// and last byte, and those that remain by the bytes between.
class Finder {
public:
    Finder(std::string_view pool, std::string_view pattern)
        : pool_(pool), pattern_(pattern), first_(pattern.front()), last_(pattern.back()) {}

    bool matches(std::string_view text) const {
        if (text.size() < pattern_.size()) return false;
        const std::size_t last = pattern_.size() - 1;
        std::size_t at = static_cast<std::size_t>(text.data() - pool_.data());
        for (const std::size_t end = at + text.size() - last; at < end; at += sizeof(Bytes16)) {
            Positions found(first_.matches(loadBytes(pool_, at)) & last_.matches(loadBytes(pool_, at + last)));
            for (found.removeFrom(end - at); !found.empty(); found.removeFirst())
                if (matchesBetween(at + found.first())) return true;
        }
        return false;
    }

private:
    bool matchesBetween(std::size_t at) const {
        for (std::size_t i = 1; i + 1 < pattern_.size(); ++i)
            if (asciiLower(pool_[at + i]) != pattern_[i]) return false;
        return true;
    }

    std::string_view pool_;
    std::string_view pattern_;
    Letter first_;
    Letter last_;
};

}  // namespace

RuleSearch::RuleSearch(const RuleStorage& storage) : storage_(&storage) {
    LargeVector<std::uint8_t> isOther(storage.size());
    inParts(isOther.size(), worthwhile, [&](std::size_t begin, std::size_t end) {
        for (std::size_t index = begin; index < end; ++index)
            isOther[index] = !isAscii(storage.rule(static_cast<RuleStorage::Index>(index)));
    });
    for (RuleStorage::Index index = 0; index < storage.size(); ++index) {
        if (!isOther[index]) continue;
        others_.push_back(index);
        lowered_ += loweredForSearch(storage.rule(index));
        ends_.push_back(lowered_.size());
    }
}

// One search, in two phases: match all rules in the order of memory, then collect the rows that match.
class RuleSearch::Pass {
public:
    using Index = RuleStorage::Index;

    // `pattern` must outlive this.
    Pass(const RuleSearch& search, const std::string& pattern, std::span<const Index> rows)
        : search_(search), rows_(rows), pattern_(pattern), matches_(search.storage_->size()), positions_(rows.size()) {}

    LargeVector<std::uint32_t> run() {
        const auto match = [this](std::size_t begin, std::size_t end) { matchRules(begin, end); };
        const auto collect = [this](std::size_t begin, std::size_t end) { collectRows(begin, end); };
        inPhases(partsWorthwhile(matches_.size(), worthwhile), {{matches_.size(), match}, {rows_.size(), collect}});
        closeGaps();
        return std::move(positions_);
    }

private:
    // The matching rows of one part, stored from the index of the part's first row on.
    struct Run {
        std::size_t begin;
        std::size_t size;
        bool operator<(const Run& other) const { return begin < other.begin; }
    };

    void matchRules(std::size_t begin, std::size_t end) {
        const Finder inRules(search_.storage_->pool(), pattern_);
        for (std::size_t index = begin; index < end; ++index)
            matches_[index] = inRules.matches(search_.storage_->rule(static_cast<Index>(index)));
        const auto& others = search_.others_;
        const Finder inLowered(search_.lowered_, pattern_);
        const auto first = std::lower_bound(others.begin(), others.end(), begin);
        for (auto other = first; other != others.end() && *other < end; ++other)
            matches_[*other] = inLowered.matches(search_.lowered(static_cast<std::size_t>(other - others.begin())));
    }

    // Stores every row and advances only past a match: a branch here would be mispredicted.
    void collectRows(std::size_t begin, std::size_t end) {
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
    std::span<const Index> rows_;
    const std::string& pattern_;
    LargeVector<std::uint8_t> matches_;  // bytes, as storing a bit would take a branch
    LargeVector<std::uint32_t> positions_;
    std::mutex lock_;  // guards the runs
    std::vector<Run> runs_;
};

LargeVector<std::uint32_t> RuleSearch::search(std::string_view text, std::span<const RuleStorage::Index> rows) const {
    const std::string pattern = loweredForSearch(text);
    if (pattern.empty()) return {};
    return Pass(*this, pattern, rows).run();
}

std::string_view RuleSearch::lowered(std::size_t other) const {
    const std::size_t begin = other == 0 ? 0 : ends_[other - 1];
    return std::string_view(lowered_).substr(begin, ends_[other] - begin);
}

}  // namespace store
