#include "store/rules/RuleStorage.h"

#include <algorithm>
#include <atomic>
#include <new>

#include "store/parallel/Parts.h"
#include "store/plist/XmlWriter.h"
#include "store/rules/RuleEntryWriter.h"
#include "store/rules/TextSet.h"

namespace store {

namespace {

constexpr std::size_t worthwhile = 100'000;  // rules for each thread

}  // namespace

std::optional<Date> RuleStorage::date(Index index) const {
    std::int64_t seconds = entries_[index].date;
    if (seconds == noDate) return std::nullopt;
    return Date(std::chrono::seconds(seconds));
}

bool RuleStorage::areEqual(Index a, Index b) const {
    if (entries_[a].isPlain != entries_[b].isPlain) return false;
    if (!entries_[a].isPlain) return original(a) == original(b);
    return entries_[a].date == entries_[b].date && rule(a) == rule(b);
}

std::vector<RuleStorage::Index> RuleStorage::equalTo(Index index) const {
    std::vector<Index> equal;
    for (Index other = 0; other < entries_.size(); ++other)
        if (areEqual(other, index)) equal.push_back(other);
    return equal;
}

RuleStorage::Index RuleStorage::add(std::string_view rule, Date date) {
    entries_.push_back(plainEntry(rule, date.time_since_epoch().count()));
    return static_cast<Index>(entries_.size() - 1);
}

void RuleStorage::replace(Index index, std::string_view rule, Date date) {
    entries_[index] = plainEntry(rule, date.time_since_epoch().count());
}

std::size_t RuleStorage::extend(std::size_t size) {
    pool_.resize(pool_.size() + size);
    return pool_.size() - size - readable;
}

RuleStorage::Range RuleStorage::keep(std::string_view text) {
    const Range part{static_cast<std::uint32_t>(extend(text.size())), static_cast<std::uint32_t>(text.size())};
    text.copy(pool_.data() + part.offset, text.size());
    return part;
}

RuleStorage::Entry RuleStorage::plainEntry(std::string_view rule, std::int64_t date) {
    return plainEntry(keep(rule), date);
}

RuleStorage::Entry RuleStorage::plainEntry(Range rule, std::int64_t date) {
    return {.offset = rule.offset, .size = rule.size & 0x3FFFFFFF, .hasRule = true, .isPlain = true, .date = date};
}

std::string_view RuleStorage::original(Index index) const {
    auto found = std::lower_bound(originals_.begin(), originals_.end(), index,
                                  [](const Original& a, Index b) { return a.index < b; });
    return at(found->text);
}

LargeVector<std::uint32_t> RuleStorage::hashes() const {
    LargeVector<std::uint32_t> hashes(entries_.size());
    inParts(hashes.size(), worthwhile, [&, hashOf = TextHash()](std::size_t begin, std::size_t end) {
        for (std::size_t index = begin; index < end; ++index) hashes[index] = hashOf(rule(static_cast<Index>(index)));
    });
    return hashes;
}

// Looks at the entries of one part only.
template <class IsOfPart>
void RuleStorage::markDuplicates(const LargeVector<std::uint32_t>& hashes, IsOfPart isOfPart,
                                 LargeVector<char>& isDuplicate) const {
    constexpr std::size_t lookAhead = 32;
    TextSet rules(static_cast<std::size_t>(std::ranges::count_if(hashes, isOfPart)));
    for (Index index = 0; index < hashes.size(); ++index) {
        if (index + lookAhead < hashes.size() && isOfPart(hashes[index + lookAhead]))
            rules.prefetch(hashes[index + lookAhead]);
        if (!isOfPart(hashes[index])) continue;
        const auto isEqual = [&](Index other) { return hashes[other] == hashes[index] && rule(other) == rule(index); };
        isDuplicate[index] = entries_[index].hasRule && !rules.insert(hashes[index], index, isEqual);
    }
}

// Parts are ranges of hashes: equal rules have equal hashes, so each part is independent of the others.
LargeVector<char> RuleStorage::duplicates() const {
    const std::size_t parts = partsWorthwhile(entries_.size(), worthwhile);
    const LargeVector<std::uint32_t> hashes = this->hashes();
    LargeVector<char> isDuplicate(entries_.size());
    std::atomic<bool> hasMemory = true;
    inAll(parts, [&](std::size_t part) {
        try {
            markDuplicates(
                hashes, [=](std::uint32_t hash) { return std::uint64_t{hash} * parts >> 32 == part; }, isDuplicate);
        } catch (const std::bad_alloc&) {
            hasMemory = false;
        }
    });
    if (!hasMemory) throw std::bad_alloc();
    return isDuplicate;
}

// Compacts the entries, which changes their indices: only done before anybody knows these.
void RuleStorage::removeDuplicates() {
    const LargeVector<char> isDuplicate = duplicates();
    Index kept = 0;
    auto original = originals_.begin();
    auto keptOriginal = originals_.begin();
    for (Index index = 0; index < entries_.size(); ++index) {
        const bool hasOriginal = original != originals_.end() && original->index == index;
        if (!isDuplicate[index]) {
            if (hasOriginal) *keptOriginal++ = {kept, original->text};
            entries_[kept++] = entries_[index];
        }
        if (hasOriginal) ++original;
    }
    entries_.resize(kept);
    originals_.erase(keptOriginal, originals_.end());
}

// The order of writing is not that of memory: entries and their texts are prefetched.
void RuleStorage::write(XmlWriter& writer, const std::vector<Index>& indices) const {
    constexpr std::size_t entryAhead = 32;
    constexpr std::size_t textAhead = 16;
    writer.inBlocks(indices.size(), [&](XmlWriter& part) {
        return [this, &indices, &part, entries = RuleEntryWriter(part)](std::size_t begin, std::size_t end) mutable {
            for (std::size_t each = begin; each < end; ++each) {
                if (each + entryAhead < indices.size()) __builtin_prefetch(&entries_[indices[each + entryAhead]]);
                if (each + textAhead < indices.size()) {
                    const std::string_view text = rule(indices[each + textAhead]);
                    __builtin_prefetch(text.data());
                    __builtin_prefetch(text.data() + text.size());
                }
                const Index index = indices[each];
                if (entries_[index].isPlain)
                    entries.write(rule(index), date(index));
                else
                    part.line(original(index));
            }
        };
    });
    for (Range element : foreign_) writer.line(at(element));
}

}  // namespace store
