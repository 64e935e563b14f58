#include "store/NameSort.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "store/Ordering.h"

namespace store {

namespace {

// A thing with its key, of which eight bytes at a time are at hand as a number.
struct Keyed {
    std::uint64_t part;
    std::uint32_t offset;  // of the key in the block of keys; it ends with a 0
    std::uint32_t place;   // in the order before, which settles what compares as the same
};

constexpr std::size_t step = sizeof Keyed::part;
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
        ascii_.reserve(things_.size());
        for (std::uint32_t place = 0; place < things_.size(); ++place) {
            std::string_view name = nameOf_(things_[place]);
            std::size_t offset = asciiKeys_.size();
            if (order_.appendAsciiKey(name, asciiKeys_)) {
                asciiKeys_.push_back('\0');
                ascii_.push_back({0, static_cast<std::uint32_t>(offset), place});
            } else {
                others_.push_back({0, static_cast<std::uint32_t>(otherKeys_.size()), place});
                otherKeys_.append(order_.sortKey(name));
                otherKeys_.push_back('\0');
            }
        }
    }

    static void sortKeys(std::vector<Keyed>& things, std::string& keys) {
        keys.append(step, '\0');
        auto isBefore = [&](const Keyed& a, const Keyed& b) {
            return std::strcmp(keys.data() + a.offset, keys.data() + b.offset) < 0;
        };
        // Lists are mostly read in the order in which they were last shown.
        if (!std::is_sorted(things.begin(), things.end(), isBefore)) sortByEightBytes(things, keys);
    }

    // Things that share the first eight bytes of their keys are sorted by the next eight, and so on: every key is
    // looked at a few times only, in memory far away, and comparing needs none of it.
    static void sortByEightBytes(std::vector<Keyed>& things, const std::string& keys) {
        struct Alike {
            std::size_t begin, end, depth;
        };
        std::vector<Alike> left{{0, things.size(), 0}};
        while (!left.empty()) {
            Alike alike = left.back();
            left.pop_back();
            auto begin = things.begin() + static_cast<std::ptrdiff_t>(alike.begin);
            auto end = things.begin() + static_cast<std::ptrdiff_t>(alike.end);
            for (auto keyed = begin; keyed != end; ++keyed)
                keyed->part = eightBytes(keys.data() + keyed->offset + alike.depth);
            std::sort(begin, end, [](const Keyed& a, const Keyed& b) {
                return a.part != b.part ? a.part < b.part : a.place < b.place;
            });
            for (auto first = begin; first != end;) {
                auto last = std::find_if(first, end, [&](const Keyed& keyed) { return keyed.part != first->part; });
                bool goesOn = first->part & 0xFF;
                if (goesOn && last - first > 1)
                    left.push_back({static_cast<std::size_t>(first - things.begin()),
                                    static_cast<std::size_t>(last - things.begin()), alike.depth + step});
                first = last;
            }
        }
    }

    // As a number that compares as the bytes do; nothing behind the key's end takes part.
    static std::uint64_t eightBytes(const char* key) {
        std::uint64_t part = 0;
        for (int shift = 56; shift >= 0 && *key; shift -= 8, ++key)
            part |= std::uint64_t{static_cast<unsigned char>(*key)} << shift;
        return part;
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
        int order = order_.compare(nameOf_(things_[a.place]), nameOf_(things_[b.place]));
        return order != 0 ? order < 0 : a.place < b.place;
    }

    std::vector<std::uint32_t>& things_;
    const std::function<std::string_view(std::uint32_t)>& nameOf_;
    const NameOrder& order_;
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
