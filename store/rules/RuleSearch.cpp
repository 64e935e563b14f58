#include "store/rules/RuleSearch.h"

#include <algorithm>
#include <array>
#include <map>
#include <mutex>

#include "store/parallel/Parts.h"
#include "store/text/Ascii.h"
#include "store/text/Search.h"

namespace store {

namespace {

constexpr std::size_t worthwhile = 50'000;  // rules for each thread

// A byte of a lowered pattern, which an ASCII letter of either case matches.
class Letter {
public:
    explicit Letter(char lowered)
        : wanted_(sixteen(lowered)), caseBit_(sixteen(lowered >= 'a' && lowered <= 'z' ? 0x20 : 0)) {}

    Bytes16 matches(const char* text) const { return (loadBytes(text) | caseBit_) == wanted_; }

private:
    Bytes16 wanted_;
    Bytes16 caseBit_;
};

// Searches texts, ASCII or lowered, for a lowered, non-empty pattern: by its first and last byte at 32 places at once,
// which are all places of most rules, then by the bytes between. A branch on whether there is a candidate would often
// be mispredicted, so patterns without bytes between take none. Reads up to RuleStorage::readable bytes behind a text.
class Finder {
public:
    explicit Finder(std::string_view pattern) : pattern_(pattern), first_(pattern.front()), last_(pattern.back()) {}

    bool matches(std::string_view text) const {
        if (text.size() < pattern_.size()) return false;
        bool isFound = false;
        const char* const end = text.data() + text.size() - pattern_.size() + 1;
        for (const char* at = text.data(); at < end; at += 2 * step) {
            const char* isBefore = beforeEnd.data() + 2 * step - std::min<std::ptrdiff_t>(end - at, 2 * step);
            const Bytes16 low = candidates(at) & loadBytes(isBefore);
            const Bytes16 high = candidates(at + step) & loadBytes(isBefore + step);
            const bool isCandidate = !Positions(low | high).empty();
            if (pattern_.size() <= 2)
                isFound |= isCandidate;
            else if (isCandidate)
                isFound |= isAtAny(low, at) || isAtAny(high, at + step);
        }
        return isFound;
    }

private:
    static constexpr std::ptrdiff_t step = sizeof(Bytes16);

    // Flags for 32 places before an end and 32 behind it.
    static constexpr auto beforeEnd = [] {
        std::array<char, 4 * step> flags{};
        std::fill_n(flags.begin(), 2 * step, '\xFF');
        return flags;
    }();

    Bytes16 candidates(const char* text) const {
        return first_.matches(text) & last_.matches(text + pattern_.size() - 1);
    }

    bool isAtAny(Bytes16 candidates, const char* text) const {
        for (Positions found(candidates); !found.empty(); found.removeFirst())
            if (isAt(text + found.first())) return true;
        return false;
    }

    bool isAt(const char* text) const {
        for (std::size_t i = 1; i + 1 < pattern_.size(); ++i)
            if (asciiLower(text[i]) != pattern_[i]) return false;
        return true;
    }

    std::string_view pattern_;
    Letter first_;
    Letter last_;
};

// The positions of the rows whose rules match. Every part stores its own from its first row on; then gaps are closed.
LargeVector<std::uint32_t> matchingRows(const LargeVector<std::uint8_t>& matches,
                                        std::span<const RuleStorage::Index> rows) {
    LargeVector<std::uint32_t> found(rows.size());
    std::mutex lock;                           // guards the sizes
    std::map<std::size_t, std::size_t> sizes;  // by the first row of a part: how many match
    inParts(rows.size(), worthwhile, [&](std::size_t begin, std::size_t end) {
        std::size_t next = begin;
        // Stores every row and advances only past a match: a branch here would be mispredicted.
        for (std::size_t row = begin; row < end; ++row) {
            found[next] = static_cast<std::uint32_t>(row);
            next += matches[rows[row]];
        }
        const std::lock_guard guard(lock);
        sizes[begin] = next - begin;
    });
    std::size_t size = 0;
    for (const auto& [begin, count] : sizes) {
        std::copy_n(found.data() + begin, count, found.data() + size);
        size += count;
    }
    found.resize(size);
    return found;
}

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
    lowered_.append(RuleStorage::readable, '\0');
}

LargeVector<std::uint32_t> RuleSearch::search(std::string_view text, std::span<const RuleStorage::Index> rows) const {
    const std::string pattern = loweredForSearch(text);
    if (pattern.empty()) return {};
    return matchingRows(matches(pattern), rows);
}

// All rules, in the order of memory.
LargeVector<std::uint8_t> RuleSearch::matches(std::string_view pattern) const {
    LargeVector<std::uint8_t> matches(storage_->size());
    inParts(matches.size(), worthwhile, [&](std::size_t begin, std::size_t end) {
        const Finder finder(pattern);
        for (std::size_t index = begin; index < end; ++index)
            matches[index] = finder.matches(storage_->rule(static_cast<RuleStorage::Index>(index)));
        const auto first = std::ranges::lower_bound(others_, begin);
        for (auto other = first; other != others_.end() && *other < end; ++other)
            matches[*other] = finder.matches(lowered(static_cast<std::size_t>(other - others_.begin())));
    });
    return matches;
}

std::string_view RuleSearch::lowered(std::size_t other) const {
    const std::size_t begin = other == 0 ? 0 : ends_[other - 1];
    return std::string_view(lowered_).substr(begin, ends_[other] - begin);
}

}  // namespace store
