#include "store/sorting/NameSort.h"

#include <algorithm>
#include <span>
#include <string>
#include <utility>

#include "store/parallel/Parts.h"
#include "store/sorting/AsciiOrder.h"
#include "store/sorting/KeySort.h"
#include "store/sorting/Ordering.h"

namespace store {

namespace {

// Names for each thread: ASCII names and others, whose keys are slower to make.
constexpr std::size_t worthwhile = 50'000;
constexpr std::size_t worthwhileOthers = 1000;
// Fewer names are sorted by comparison, which is faster than preparing keys.
constexpr std::size_t fewNames = 1000;

class NameSorter {
public:
    NameSorter(std::vector<std::uint32_t>& indices, const std::function<std::string_view(std::uint32_t)>& nameOf,
               const NameOrder& order)
        : indices_(indices), nameOf_(nameOf), order_(order) {}

    void sort() {
        makeKeys();
        sortByKeys(ascii_, asciiKeys_.data());
        sortByKeys(others_, otherKeys_.data());
        merge();
    }

private:
    // ASCII names get the cheap keys of AsciiOrder, the others sort keys of ICU. Keys of the two kinds cannot be
    // compared with each other, so each kind is sorted by itself.
    void makeKeys() {
        const AsciiOrder* ascii = nullptr;
        std::size_t size = 0;
        // Both take about as long for a million names, so they run in parallel.
        inAll(2, [&](std::size_t part) {
            if (part == 0)
                size = placeKeys();
            else
                ascii = order_.asciiOrder();
        });
        asciiKeys_.resize(size + behindKeys);
        inParts(ascii_.size(), worthwhile, [&](std::size_t begin, std::size_t end) {
            for (Keyed& keyed : std::span(ascii_).subspan(begin, end - begin))
                keyed.part = ascii && ascii->writeKey(nameOf(keyed), asciiKeys_.data() + keyed.offset);
        });
        const auto others = std::stable_partition(ascii_.begin(), ascii_.end(), [](const Keyed& k) { return k.part; });
        others_.assign(others, ascii_.end());
        ascii_.erase(others, ascii_.end());
        makeOtherKeys();
    }

    // Assigns the offsets of the ASCII keys. Returns their total size in bytes.
    std::size_t placeKeys() {
        ascii_ = keyedByIndex(indices_);
        std::size_t size = 0;
        for (Keyed& keyed : ascii_) {
            keyed.offset = static_cast<std::uint32_t>(size);
            size += nameOf(keyed).size() + 1;
        }
        return size;
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
        otherKeys_.append(behindKeys, '\0');
    }

    // Merges both kinds by comparing names. There usually are few of the second kind: their positions among the first
    // are found by an exponential search, in parallel.
    void merge() {
        std::vector<std::ptrdiff_t> places(others_.size());
        inParts(others_.size(), worthwhileOthers, [&](std::size_t begin, std::size_t end) {
            auto from = ascii_.begin();
            for (std::size_t each = begin; each < end; ++each) {
                from = firstBehind(others_[each], from);
                places[each] = from - ascii_.begin();
            }
        });
        std::vector<std::uint32_t> sorted;
        sorted.reserve(indices_.size());
        auto appendUpTo = [&, from = ascii_.begin()](auto to) mutable {
            for (; from != to; ++from) sorted.push_back(indices_[from->place]);
        };
        for (std::size_t each = 0; each < others_.size(); ++each) {
            appendUpTo(ascii_.begin() + places[each]);
            sorted.push_back(indices_[others_[each].place]);
        }
        appendUpTo(ascii_.end());
        indices_ = std::move(sorted);
    }

    // The first ASCII name behind `other`, by an exponential search from `from` on.
    LargeVector<Keyed>::iterator firstBehind(const Keyed& other, LargeVector<Keyed>::iterator from) {
        auto isBehind = [&](const Keyed& keyed) { return isBeforeByName(other, keyed); };
        auto stride = std::ptrdiff_t{1};
        while (ascii_.end() - from > stride && !isBehind(from[stride])) {
            from += stride;
            stride *= 2;
        }
        const auto end = from + std::min(stride + 1, ascii_.end() - from);
        return std::partition_point(from, end, [&](const Keyed& keyed) { return !isBehind(keyed); });
    }

    bool isBeforeByName(const Keyed& a, const Keyed& b) const {
        int order = order_.compare(nameOf(a), nameOf(b));
        return order != 0 ? order < 0 : a.place < b.place;
    }

    std::string_view nameOf(const Keyed& keyed) const { return nameOf_(indices_[keyed.place]); }

    std::vector<std::uint32_t>& indices_;
    const std::function<std::string_view(std::uint32_t)>& nameOf_;
    const NameOrder& order_;
    LargeVector<char> asciiKeys_;
    std::string otherKeys_;
    LargeVector<Keyed> ascii_;
    LargeVector<Keyed> others_;
};

}  // namespace

void sortByName(std::vector<std::uint32_t>& indices, const std::function<std::string_view(std::uint32_t)>& nameOf,
                const NameOrder& order) {
    if (indices.size() > fewNames) {
        NameSorter(indices, nameOf, order).sort();
    } else {
        std::stable_sort(indices.begin(), indices.end(),
                         [&](std::uint32_t a, std::uint32_t b) { return order.compare(nameOf(a), nameOf(b)) < 0; });
    }
}

}  // namespace store
