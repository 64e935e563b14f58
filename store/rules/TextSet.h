#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "store/sorting/LargeVector.h"

namespace store {

// Seeded hashes of texts: no file can be made so that its texts collide.
class TextHash {
public:
    TextHash();
    std::uint32_t operator()(std::string_view text) const;

private:
    std::uint64_t seed_;
};

// A hash set of texts, with open addressing and linear probing, of fixed capacity. It stores indices; the texts are the
// caller's.
class TextSet {
public:
    // Capacity in texts. It must not be exceeded.
    explicit TextSet(std::size_t count);

    // Fetches the slot of a hash into the cache, ahead of insert().
    void prefetch(std::uint32_t hash) const { __builtin_prefetch(&slots_[slotOf(hash)]); }

    // Inserts the index of a text unless the set holds an equal text; returns whether it did. isEqual(other) compares
    // the text with that of an index in the set.
    template <class IsEqual>
    bool insert(std::uint32_t hash, std::uint32_t index, IsEqual isEqual) {
        for (std::size_t at = slotOf(hash);; at = (at + 1) & (slots_.size() - 1)) {
            if (slots_[at] == none) {
                slots_[at] = index;
                return true;
            }
            if (isEqual(slots_[at])) return false;
        }
    }

private:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    std::size_t slotOf(std::uint32_t hash) const { return hash & (slots_.size() - 1); }

    LargeVector<std::uint32_t> slots_;  // indices, or none
};

}  // namespace store
