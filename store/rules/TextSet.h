#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "store/sorting/LargeVector.h"

namespace store {

// Hashes that depend on chance, so that no file can make all of its texts land in one place.
class TextHash {
public:
    TextHash();
    std::uint32_t operator()(std::string_view text) const;

private:
    std::uint64_t seed_;
};

// Which texts, equal to the byte, have been seen before. The texts themselves lie with the user, who knows each by a
// number and its hash.
class TextSet {
public:
    // There is room for so many texts and no more.
    explicit TextSet(std::size_t count);

    // A hash that will be asked for soon: a large table lies far away.
    void prefetch(std::uint32_t hash) const { __builtin_prefetch(&slots_[placeOf(hash)]); }

    // The number of a text with this hash goes in unless an equal text is there; `isEqual` compares the text with that
    // of a number that went in, its hash first.
    template <class IsEqual>
    bool insert(std::uint32_t hash, std::uint32_t number, IsEqual isEqual) {
        for (std::size_t at = placeOf(hash);; at = (at + 1) & (slots_.size() - 1)) {
            if (slots_[at] == none) {
                slots_[at] = number;
                return true;
            }
            if (isEqual(slots_[at])) return false;
        }
    }

private:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    std::size_t placeOf(std::uint32_t hash) const { return hash & (slots_.size() - 1); }

    LargeVector<std::uint32_t> slots_;  // numbers, or none
};

}  // namespace store
