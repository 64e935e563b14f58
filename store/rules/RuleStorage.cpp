#include "store/rules/RuleStorage.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <new>

#include "store/parallel/Parts.h"
#include "store/plist/XmlWriter.h"
#include "store/rules/RuleEntryWriter.h"
#include "store/rules/TextSet.h"

namespace store {

namespace {

constexpr std::size_t worthwhile = 100'000;  // rules, for a thread of their own

}  // namespace

std::optional<Date> RuleStorage::date(Number number) const {
    std::int64_t seconds = entries_[number].date;
    if (seconds == noDate) return std::nullopt;
    return Date(std::chrono::seconds(seconds));
}

bool RuleStorage::areEqual(Number a, Number b) const {
    if (entries_[a].isPlain != entries_[b].isPlain) return false;
    if (!entries_[a].isPlain) return original(a) == original(b);
    return entries_[a].date == entries_[b].date && rule(a) == rule(b);
}

std::vector<RuleStorage::Number> RuleStorage::equalTo(Number number) const {
    std::vector<Number> equal;
    for (Number other = 0; other < entries_.size(); ++other)
        if (areEqual(other, number)) equal.push_back(other);
    return equal;
}

RuleStorage::Number RuleStorage::add(std::string_view rule, Date date) {
    entries_.push_back(plainEntry(rule, date.time_since_epoch().count()));
    return static_cast<Number>(entries_.size() - 1);
}

void RuleStorage::replace(Number number, std::string_view rule, Date date) {
    entries_[number] = plainEntry(rule, date.time_since_epoch().count());
}

RuleStorage::Part RuleStorage::keep(std::string_view text) {
    Part part{static_cast<std::uint32_t>(pool_.size()), static_cast<std::uint32_t>(text.size())};
    pool_.resize(pool_.size() + text.size());
    if (!text.empty()) std::memcpy(pool_.data() + part.offset, text.data(), text.size());
    return part;
}

RuleStorage::Entry RuleStorage::plainEntry(std::string_view rule, std::int64_t date) {
    return plainEntry(keep(rule), date);
}

RuleStorage::Entry RuleStorage::plainEntry(Part rule, std::int64_t date) {
    return {.offset = rule.offset, .size = rule.size & 0x3FFFFFFF, .hasRule = true, .isPlain = true, .date = date};
}

std::string_view RuleStorage::original(Number number) const {
    auto found = std::lower_bound(originals_.begin(), originals_.end(), number,
                                  [](const Original& a, Number b) { return a.number < b; });
    return at(found->text);
}

LargeVector<std::uint32_t> RuleStorage::hashes() const {
    LargeVector<std::uint32_t> hashes(entries_.size());
    inParts(hashes.size(), worthwhile, [&, hashOf = TextHash()](std::size_t begin, std::size_t end) {
        for (std::size_t number = begin; number < end; ++number)
            hashes[number] = hashOf(rule(static_cast<Number>(number)));
    });
    return hashes;
}

// Among the entries of one part; the others are left.
template <class IsOfPart>
void RuleStorage::markRepeated(const LargeVector<std::uint32_t>& hashes, IsOfPart isOfPart,
                               LargeVector<char>& isRepeated) const {
    constexpr std::size_t lookAhead = 32;
    TextSet rules(static_cast<std::size_t>(std::ranges::count_if(hashes, isOfPart)));
    for (Number number = 0; number < hashes.size(); ++number) {
        if (number + lookAhead < hashes.size() && isOfPart(hashes[number + lookAhead]))
            rules.prefetch(hashes[number + lookAhead]);
        if (!isOfPart(hashes[number])) continue;
        const auto isEqual = [&](Number other) {
            return hashes[other] == hashes[number] && rule(other) == rule(number);
        };
        isRepeated[number] = entries_[number].hasRule && !rules.insert(hashes[number], number, isEqual);
    }
}

// Equal rules have the same hash, so they are all of one part.
LargeVector<char> RuleStorage::repeated() const {
    const std::size_t parts = partsWorthwhile(entries_.size(), worthwhile);
    const LargeVector<std::uint32_t> hashes = this->hashes();
    LargeVector<char> isRepeated(entries_.size());
    std::atomic<bool> hasMemory = true;
    inAll(parts, [&](std::size_t part) {
        try {
            markRepeated(
                hashes, [=](std::uint32_t hash) { return std::uint64_t{hash} * parts >> 32 == part; }, isRepeated);
        } catch (const std::bad_alloc&) {
            hasMemory = false;
        }
    });
    if (!hasMemory) throw std::bad_alloc();
    return isRepeated;
}

// Entries move up, and their numbers change.
void RuleStorage::dropRepeated() {
    const LargeVector<char> isRepeated = repeated();
    Number kept = 0;
    auto original = originals_.begin();
    auto keptOriginal = originals_.begin();
    for (Number number = 0; number < entries_.size(); ++number) {
        const bool hasOriginal = original != originals_.end() && original->number == number;
        if (!isRepeated[number]) {
            if (hasOriginal) *keptOriginal++ = {kept, original->text};
            entries_[kept++] = entries_[number];
        }
        if (hasOriginal) ++original;
    }
    entries_.resize(kept);
    originals_.erase(keptOriginal, originals_.end());
}

// Entries are read in one order and written in another: each and its text lie anywhere, and are fetched ahead of use.
void RuleStorage::write(XmlWriter& writer, const std::vector<Number>& numbers) const {
    constexpr std::size_t entryAhead = 32;
    constexpr std::size_t textAhead = 16;
    writer.inBlocks(numbers.size(), [&](XmlWriter& part) {
        return [this, &numbers, &part, entries = RuleEntryWriter(part)](std::size_t begin, std::size_t end) mutable {
            for (std::size_t each = begin; each < end; ++each) {
                if (each + entryAhead < numbers.size()) __builtin_prefetch(&entries_[numbers[each + entryAhead]]);
                if (each + textAhead < numbers.size()) {
                    const std::string_view text = rule(numbers[each + textAhead]);
                    __builtin_prefetch(text.data());
                    __builtin_prefetch(text.data() + text.size());
                }
                const Number number = numbers[each];
                if (entries_[number].isPlain)
                    entries.write(rule(number), date(number));
                else
                    part.line(original(number));
            }
        };
    });
    for (Part element : foreign_) writer.line(at(element));
}

}  // namespace store
