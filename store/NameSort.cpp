#include "store/NameSort.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <functional>
#include <future>
#include <span>
#include <string>
#include <thread>
#include <utility>

#include "store/AsciiOrder.h"
#include "store/Ordering.h"
#include "store/Parts.h"

namespace store {

namespace {

// A thing with its key, of which eight bytes at a time are at hand as a number.
struct Keyed {
    std::uint64_t part;
    std::uint32_t offset;  // of the key in the block of keys; it ends with a 0
    std::uint32_t place;   // in the order before, which settles what compares as the same
};

constexpr std::size_t step = sizeof Keyed::part;
// So many keys further on are fetched from memory while one is looked at.
constexpr std::ptrdiff_t lookAhead = 16;
// From so many things on, a second processor ends sooner than it begins.
constexpr std::size_t worthwhile = 50'000;
constexpr std::size_t worthwhileOthers = 1000;
// Up to here, comparing names with each other is less work than making what keys are made from.
constexpr std::size_t fewNames = 1000;

class NameSorter {
public:
    NameSorter(std::vector<std::uint32_t>& things, const std::function<std::string_view(std::uint32_t)>& nameOf,
               const NameOrder& order)
        : things_(things), nameOf_(nameOf), order_(order) {}

    void sort() {
        makeKeys();
        sortKeys(ascii_, asciiKeys_);
        sortKeys(others_, otherKeys_);
        std::vector<std::uint32_t> sorted;
        sorted.reserve(things_.size());
        for (const Keyed& keyed : merged()) sorted.push_back(things_[keyed.place]);
        things_ = std::move(sorted);
    }

private:
    // Names of ASCII characters get keys that cost next to nothing, the others real sort keys. The two kinds of key
    // cannot be compared with each other, so each is sorted for itself.
    void makeKeys() {
        ascii_.resize(things_.size());
        std::size_t size = 0;
        for (std::uint32_t place = 0; place < things_.size(); ++place) {
            ascii_[place] = {0, static_cast<std::uint32_t>(size), place};
            size += nameOf_(things_[place]).size() + 1;
        }
        asciiKeys_.resize(size + step);
        const AsciiOrder* ascii = order_.asciiOrder();
        inParts(ascii_.size(), worthwhile, [&](std::size_t begin, std::size_t end) {
            for (Keyed& keyed : std::span(ascii_).subspan(begin, end - begin))
                keyed.part = ascii && ascii->writeKey(nameOf(keyed), asciiKeys_.data() + keyed.offset);
        });
        const auto others = std::stable_partition(ascii_.begin(), ascii_.end(), [](const Keyed& k) { return k.part; });
        others_.assign(others, ascii_.end());
        ascii_.erase(others, ascii_.end());
        makeOtherKeys();
    }

    void makeOtherKeys() {
        std::vector<std::string> keys(others_.size());
        inParts(keys.size(), worthwhileOthers, [&](std::size_t begin, std::size_t end) {
            for (std::size_t each = begin; each < end; ++each) keys[each] = order_.sortKey(nameOf(others_[each]));
        });
        for (std::size_t each = 0; each < keys.size(); ++each) {
            others_[each].offset = static_cast<std::uint32_t>(otherKeys_.size());
            otherKeys_.append(keys[each]).push_back('\0');
        }
        otherKeys_.append(step, '\0');
    }

    static void sortKeys(std::vector<Keyed>& things, const std::string& keys) {
        auto isBefore = [&](const Keyed& a, const Keyed& b) {
            return std::strcmp(keys.data() + a.offset, keys.data() + b.offset) < 0;
        };
        // Lists are mostly read in the order in which they were last shown.
        if (std::is_sorted(things.begin(), things.end(), isBefore)) return;
        loadParts(things, keys, 0);
        sortInParts(things, keys, std::max(1u, std::thread::hardware_concurrency()));
    }

    // Splits things between processors: on one side of the middle all have smaller first parts.
    static void sortInParts(std::span<Keyed> things, const std::string& keys, unsigned processors) {
        if (processors < 2 || things.size() < worthwhile) return sortByEightBytes(things, keys);
        const auto middle = things.begin() + static_cast<std::ptrdiff_t>(things.size() / 2);
        std::nth_element(things.begin(), middle, things.end(), comesBefore);
        const auto larger = std::partition(things.begin(), middle,
                                           [part = middle->part](const Keyed& keyed) { return keyed.part < part; });
        std::future<void> smaller =
            std::async(sortInParts, std::span(things.begin(), larger), std::cref(keys), processors / 2);
        sortInParts({larger, things.end()}, keys, processors - processors / 2);
        smaller.get();
    }

    // Things with equal parts are in the order of their places.
    static bool comesBefore(const Keyed& a, const Keyed& b) {
        return a.part != b.part ? a.part < b.part : a.place < b.place;
    }

    static void loadParts(std::span<Keyed> things, const std::string& keys, std::size_t depth) {
        const char* from = keys.data() + depth;
        for (auto keyed = things.begin(); keyed != things.end(); ++keyed) {
            if (things.end() - keyed > lookAhead) __builtin_prefetch(from + keyed[lookAhead].offset);
            keyed->part = eightBytes(from + keyed->offset);
        }
    }

    // Things that share the first eight bytes of their keys, which are at hand, are sorted by the next eight, and so
    // on: every key is looked at a few times only, in memory far away, and comparing needs none of it.
    static void sortByEightBytes(std::span<Keyed> things, const std::string& keys) {
        struct Alike {
            std::span<Keyed> things;
            std::size_t depth;
        };
        std::vector<Alike> left{{things, 0}};
        while (!left.empty()) {
            const Alike alike = left.back();
            left.pop_back();
            if (alike.depth > 0) loadParts(alike.things, keys, alike.depth);
            std::sort(alike.things.begin(), alike.things.end(), comesBefore);
            for (auto first = alike.things.begin(); first != alike.things.end();) {
                auto last = std::find_if(first, alike.things.end(),
                                         [&](const Keyed& keyed) { return keyed.part != first->part; });
                bool goesOn = first->part & 0xFF;
                if (goesOn && last - first > 1) left.push_back({{first, last}, alike.depth + step});
                first = last;
            }
        }
    }

    // As a number that compares as the bytes do; nothing behind the key's end takes part.
    static std::uint64_t eightBytes(const char* key) {
        static_assert(std::endian::native == std::endian::little);
        constexpr std::uint64_t everyByte = 0x0101010101010101;
        std::uint64_t word;
        std::memcpy(&word, key, sizeof word);
        const std::uint64_t ends = (word - everyByte) & ~word & (0x80 * everyByte);
        const std::uint64_t beforeEnd = (ends & -ends) - 1;  // without an end, every bit
        return __builtin_bswap64(word & beforeEnd);
    }

    // Both kinds in one order. As a rule there are few of the second kind: what lies between two of them is found in
    // growing steps and moved as a whole.
    std::vector<Keyed> merged() {
        if (others_.empty()) return std::move(ascii_);
        std::vector<Keyed> all;
        all.reserve(things_.size());
        auto from = ascii_.begin();
        for (const Keyed& other : others_) {
            auto isBehind = [&](const Keyed& keyed) { return isBeforeByName(other, keyed); };
            auto stride = std::ptrdiff_t{1};
            auto low = from;
            while (ascii_.end() - low > stride && !isBehind(low[stride])) {
                low += stride;
                stride *= 2;
            }
            auto high = low + std::min(stride + 1, ascii_.end() - low);
            auto to = std::partition_point(low, high, [&](const Keyed& keyed) { return !isBehind(keyed); });
            all.insert(all.end(), from, to);
            all.push_back(other);
            from = to;
        }
        all.insert(all.end(), from, ascii_.end());
        return all;
    }

    bool isBeforeByName(const Keyed& a, const Keyed& b) const {
        int order = order_.compare(nameOf(a), nameOf(b));
        return order != 0 ? order < 0 : a.place < b.place;
    }

    std::string_view nameOf(const Keyed& keyed) const { return nameOf_(things_[keyed.place]); }

    std::vector<std::uint32_t>& things_;
    const std::function<std::string_view(std::uint32_t)>& nameOf_;
    const NameOrder& order_;
    // Keys end with a 0, and behind the last there is something to read.
    std::string asciiKeys_;
    std::string otherKeys_;
    std::vector<Keyed> ascii_;
    std::vector<Keyed> others_;
};

}  // namespace

void sortByName(std::vector<std::uint32_t>& things, const std::function<std::string_view(std::uint32_t)>& nameOf,
                const NameOrder& order) {
    if (things.size() > fewNames) {
        NameSorter(things, nameOf, order).sort();
    } else {
        std::stable_sort(things.begin(), things.end(),
                         [&](std::uint32_t a, std::uint32_t b) { return order.compare(nameOf(a), nameOf(b)) < 0; });
    }
}

}  // namespace store
