#include "store/sorting/KeySort.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
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
// Prefetch distance, in keys.
constexpr std::ptrdiff_t lookAhead = 16;
// Elements for each thread.
constexpr std::size_t worthwhile = 50'000;
// Smaller groups are sorted by comparison, which is faster than counting.
constexpr std::size_t smallGroup = 48;

// The first eight bytes of a key as a big-endian number; bytes from its 0 on are 0.
std::uint64_t eightBytes(const char* key) {
    static_assert(std::endian::native == std::endian::little);
    constexpr std::uint64_t everyByte = 0x0101010101010101;
    std::uint64_t word;
    std::memcpy(&word, key, sizeof word);
    const std::uint64_t ends = (word - everyByte) & ~word & (0x80 * everyByte);
    const std::uint64_t beforeEnd = (ends & -ends) - 1;  // all bits where the key does not end
    return __builtin_bswap64(word & beforeEnd);
}

void loadParts(std::span<Keyed> elements, const char* keys) {
    for (auto keyed = elements.begin(); keyed != elements.end(); ++keyed) {
        if (elements.end() - keyed > lookAhead) __builtin_prefetch(keys + keyed[lookAhead].offset);
        keyed->part = eightBytes(keys + keyed->offset);
    }
}

bool comesBefore(const Keyed& a, const Keyed& b) {
    return a.part != b.part ? a.part < b.part : a.place < b.place;
}

// One pass of the radix sort: a stable counting sort by the `count` bits from `shift` on, from one span into another of
// the same size. Returns the end of each group.
template <int count>
auto group(std::span<const Keyed> elements, std::span<Keyed> grouped, int shift) {
    constexpr std::size_t groups = std::size_t{1} << count;
    auto groupOf = [shift](const Keyed& keyed) { return keyed.part >> shift & (groups - 1); };
    std::array<std::uint32_t, groups + 1> places{};
    for (const Keyed& keyed : elements) ++places[groupOf(keyed) + 1];
    std::partial_sum(places.begin(), places.end(), places.begin());
    for (const Keyed& keyed : elements) grouped[places[groupOf(keyed)]++] = keyed;
    return places;
}

// Sorts by the parts, whose bits from `shift` + 8 on are equal. `spare` is scratch of the same size.
void sortByPart(std::span<Keyed> elements, std::span<Keyed> spare, int shift) {
    if (elements.size() < smallGroup) return std::sort(elements.begin(), elements.end(), comesBefore);
    if (shift < 0) return;
    const auto ends = group<byteBits>(elements, spare, shift);
    std::ranges::copy(spare, elements.begin());
    std::size_t first = 0;
    for (const std::size_t last : ends) {
        const std::size_t size = last - first;
        if (size > 1) sortByPart(elements.subspan(first, size), spare.subspan(first, size), shift - byteBits);
        first = last;
    }
}

// Calls found(first, last) for each group of several elements with equal parts.
template <class Found>
void forEachRun(std::span<Keyed> elements, Found found) {
    for (auto first = elements.begin(); first != elements.end();) {
        const auto last = std::find_if(first, elements.end(), [&](const Keyed& k) { return k.part != first->part; });
        if (last - first > 1) found(first, last);
        first = last;
    }
}

void sortByPlace(std::span<Keyed>::iterator first, std::span<Keyed>::iterator last) {
    const auto byPlace = [](const Keyed& a, const Keyed& b) { return a.place < b.place; };
    if (!std::is_sorted(first, last, byPlace)) std::sort(first, last, byPlace);
}

// Sorts by the first eight bytes of the keys, which are in the parts, then each group of equals by the next eight, and
// so on: every eight bytes of a key are read once, as they are likely to miss the cache.
void sortGroup(std::span<Keyed> elements, std::span<Keyed> spare, const char* keys) {
    struct Group {
        std::size_t first;
        std::size_t size;
        std::size_t depth;
    };
    std::vector<Group> left{{0, elements.size(), 0}};
    while (!left.empty()) {
        const Group equal = left.back();
        left.pop_back();
        const auto some = elements.subspan(equal.first, equal.size);
        if (equal.depth > 0) loadParts(some, keys + equal.depth);
        const int known = equal.depth > 0 ? 0 : groupBits;
        sortByPart(some, spare.subspan(equal.first, equal.size), bits - known - byteBits);
        forEachRun(some, [&](auto first, auto last) {
            const bool goesOn = first->part & 0xFF;
            if (!goesOn) return sortByPlace(first, last);
            left.push_back({static_cast<std::size_t>(first - elements.begin()), static_cast<std::size_t>(last - first),
                            equal.depth + step});
        });
    }
}

// Groups the elements by the highest bits of their parts and sorts the groups in parallel.
void sortInGroups(LargeVector<Keyed>& elements, const char* keys) {
    LargeVector<Keyed> spare(elements.size());
    const auto ends = group<groupBits>(elements, spare, bits - groupBits);
    elements.swap(spare);
    inParts(elements.size(), worthwhile, [&](std::size_t begin, std::size_t end) {
        std::size_t first = 0;
        for (const std::size_t last : ends) {
            const std::size_t size = last - first;
            if (size > 1 && first >= begin && first < end)
                sortGroup(std::span(elements).subspan(first, size), std::span(spare).subspan(first, size), keys);
            first = last;
        }
    });
}

bool areSorted(const LargeVector<Keyed>& elements, const char* keys) {
    return std::ranges::is_sorted(elements, [keys](const Keyed& a, const Keyed& b) {
        const int order = std::strcmp(keys + a.offset, keys + b.offset);
        return order != 0 ? order < 0 : a.place < b.place;
    });
}

}  // namespace

LargeVector<Keyed> keyedByIndex(const std::vector<std::uint32_t>& elements) {
    LargeVector<Keyed> keyed;
    keyed.reserve(elements.size());
    // The order of a list that has just been read.
    if (std::ranges::is_sorted(elements)) {
        for (std::uint32_t place = 0; place < elements.size(); ++place) keyed.push_back({0, 0, place});
        return keyed;
    }
    constexpr auto noPlace = UINT32_MAX;
    const std::size_t range = elements.empty() ? 0 : std::size_t{*std::ranges::max_element(elements)} + 1;
    LargeVector<std::uint32_t> placeOf(range, noPlace);
    for (std::uint32_t place = 0; place < elements.size(); ++place) placeOf[elements[place]] = place;
    for (const std::uint32_t place : placeOf)
        if (place != noPlace) keyed.push_back({0, 0, place});
    return keyed;
}

void sortByKeys(LargeVector<Keyed>& elements, const char* keys) {
    // Stored lists mostly are in the order in which they were shown.
    if (areSorted(elements, keys)) return;
    inParts(elements.size(), worthwhile, [&](std::size_t begin, std::size_t end) {
        loadParts(std::span(elements).subspan(begin, end - begin), keys);
    });
    sortInGroups(elements, keys);
}

}  // namespace store
