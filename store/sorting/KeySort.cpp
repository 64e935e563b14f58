#include "store/sorting/KeySort.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <functional>
#include <numeric>
#include <span>
#include <utility>

#include "store/parallel/Parts.h"

namespace store {

namespace {

constexpr std::size_t step = sizeof Keyed::part;
constexpr int bits = 64;
constexpr int byteBits = 8;
constexpr int groupBits = 16;
// So many keys further on are fetched from memory while one is looked at.
constexpr std::ptrdiff_t lookAhead = 16;
// From so many things on, a second processor ends sooner than it begins.
constexpr std::size_t worthwhile = 50'000;
// Up to here, comparing things with each other is less work than counting them.
constexpr std::size_t fewThings = 48;

// The first eight bytes, as a number that compares as they do; nothing behind the key's end takes part.
std::uint64_t eightBytes(const char* key) {
    static_assert(std::endian::native == std::endian::little);
    constexpr std::uint64_t everyByte = 0x0101010101010101;
    std::uint64_t word;
    std::memcpy(&word, key, sizeof word);
    const std::uint64_t ends = (word - everyByte) & ~word & (0x80 * everyByte);
    const std::uint64_t beforeEnd = (ends & -ends) - 1;  // without an end, every bit
    return __builtin_bswap64(word & beforeEnd);
}

void loadParts(std::span<Keyed> things, const char* keys) {
    for (auto keyed = things.begin(); keyed != things.end(); ++keyed) {
        if (things.end() - keyed > lookAhead) __builtin_prefetch(keys + keyed[lookAhead].offset);
        keyed->part = eightBytes(keys + keyed->offset);
    }
}

bool comesBefore(const Keyed& a, const Keyed& b) {
    return a.part != b.part ? a.part < b.part : a.place < b.place;
}

// Puts things with the same `count` bits of their parts next to each other, in the order of these bits: from one span
// into the other of the same size. Returns where each group ends.
template <int count>
auto group(std::span<const Keyed> things, std::span<Keyed> grouped, int shift) {
    constexpr std::size_t groups = std::size_t{1} << count;
    auto groupOf = [shift](const Keyed& keyed) { return keyed.part >> shift & (groups - 1); };
    std::array<std::uint32_t, groups + 1> places{};
    for (const Keyed& keyed : things) ++places[groupOf(keyed) + 1];
    std::partial_sum(places.begin(), places.end(), places.begin());
    for (const Keyed& keyed : things) grouped[places[groupOf(keyed)]++] = keyed;
    return places;
}

// By their parts, of which all bits from `shift` + 8 on are the same. `spare` is as large.
void sortByPart(std::span<Keyed> things, std::span<Keyed> spare, int shift) {
    if (things.size() < fewThings) return std::sort(things.begin(), things.end(), comesBefore);
    if (shift < 0) return;
    const auto ends = group<byteBits>(things, spare, shift);
    std::ranges::copy(spare, things.begin());
    std::size_t first = 0;
    for (const std::size_t last : ends) {
        const std::size_t size = last - first;
        if (size > 1) sortByPart(things.subspan(first, size), spare.subspan(first, size), shift - byteBits);
        first = last;
    }
}

// Calls found(first, last) for each run of more than one with the same part.
template <class Found>
void forEachRun(std::span<Keyed> things, Found found) {
    for (auto first = things.begin(); first != things.end();) {
        const auto last = std::find_if(first, things.end(), [&](const Keyed& k) { return k.part != first->part; });
        if (last - first > 1) found(first, last);
        first = last;
    }
}

void sortByPlace(std::span<Keyed>::iterator first, std::span<Keyed>::iterator last) {
    const auto byPlace = [](const Keyed& a, const Keyed& b) { return a.place < b.place; };
    if (!std::is_sorted(first, last, byPlace)) std::sort(first, last, byPlace);
}

// Things that share the first eight bytes of their keys, which are at hand, are sorted by the next eight, and so on:
// every key is looked at a few times only, in memory far away.
void sortGroup(std::span<Keyed> things, std::span<Keyed> spare, const char* keys) {
    struct Alike {
        std::size_t first;
        std::size_t size;
        std::size_t depth;
    };
    std::vector<Alike> left{{0, things.size(), 0}};
    while (!left.empty()) {
        const Alike alike = left.back();
        left.pop_back();
        const auto some = things.subspan(alike.first, alike.size);
        if (alike.depth > 0) loadParts(some, keys + alike.depth);
        const int known = alike.depth > 0 ? 0 : groupBits;
        sortByPart(some, spare.subspan(alike.first, alike.size), bits - known - byteBits);
        forEachRun(some, [&](auto first, auto last) {
            const bool goesOn = first->part & 0xFF;
            if (!goesOn) return sortByPlace(first, last);
            left.push_back({static_cast<std::size_t>(first - things.begin()), static_cast<std::size_t>(last - first),
                            alike.depth + step});
        });
    }
}

// Groups things by the first bits of their parts, and sorts the groups, several at the same time. `sortGroup` gets a
// group and a spare span of the same size.
void sortInGroups(LargeVector<Keyed>& things,
                  const std::function<void(std::span<Keyed>, std::span<Keyed>)>& sortGroup) {
    LargeVector<Keyed> spare(things.size());
    const auto ends = group<groupBits>(things, spare, bits - groupBits);
    things.swap(spare);
    inParts(things.size(), worthwhile, [&](std::size_t begin, std::size_t end) {
        std::size_t first = 0;
        for (const std::size_t last : ends) {
            const std::size_t size = last - first;
            if (size > 1 && first >= begin && first < end)
                sortGroup(std::span(things).subspan(first, size), std::span(spare).subspan(first, size));
            first = last;
        }
    });
}

bool areSorted(const LargeVector<Keyed>& things, const char* keys) {
    return std::ranges::is_sorted(things, [keys](const Keyed& a, const Keyed& b) {
        const int order = std::strcmp(keys + a.offset, keys + b.offset);
        return order != 0 ? order < 0 : a.place < b.place;
    });
}

}  // namespace

LargeVector<Keyed> keyedByNumber(const std::vector<std::uint32_t>& things) {
    LargeVector<Keyed> keyed;
    keyed.reserve(things.size());
    // As they are when a list has just been read.
    if (std::ranges::is_sorted(things)) {
        for (std::uint32_t place = 0; place < things.size(); ++place) keyed.push_back({0, 0, place});
        return keyed;
    }
    constexpr auto noPlace = UINT32_MAX;
    const std::size_t numbers = things.empty() ? 0 : std::size_t{*std::ranges::max_element(things)} + 1;
    LargeVector<std::uint32_t> placeOf(numbers, noPlace);
    for (std::uint32_t place = 0; place < things.size(); ++place) placeOf[things[place]] = place;
    for (const std::uint32_t place : placeOf)
        if (place != noPlace) keyed.push_back({0, 0, place});
    return keyed;
}

void sortByParts(LargeVector<Keyed>& things) {
    std::uint64_t all = 0;
    for (const Keyed& keyed : things) all |= keyed.part;
    // The first bits are to tell things apart.
    const int unused = std::countl_zero(all | 1);
    for (Keyed& keyed : things) keyed.part <<= unused;
    sortInGroups(things, [](std::span<Keyed> some, std::span<Keyed> spare) {
        sortByPart(some, spare, bits - groupBits - byteBits);
        forEachRun(some, sortByPlace);
    });
}

void sortByKeys(LargeVector<Keyed>& things, const char* keys) {
    // Lists are mostly read in the order in which they were last shown.
    if (areSorted(things, keys)) return;
    inParts(things.size(), worthwhile, [&](std::size_t begin, std::size_t end) {
        loadParts(std::span(things).subspan(begin, end - begin), keys);
    });
    sortInGroups(things, [keys](std::span<Keyed> some, std::span<Keyed> spare) { sortGroup(some, spare, keys); });
}

}  // namespace store
