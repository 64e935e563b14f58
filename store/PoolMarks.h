#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "store/LargeVector.h"

namespace store {

// A bit for every byte of a pool of texts, which says whether something stands there. Made in one pass over the whole
// pool, which stays where it is, by loops without a branch, it answers for each of a million texts in a few
// instructions.
class PoolMarks {
public:
    // Marks the bytes that are no ASCII characters.
    static PoolMarks ofOtherThanAscii(std::string_view pool);

    // The pool is marked piece by piece, which can be done at the same time; nothing is asked before all of it is.
    explicit PoolMarks(std::string_view pool);
    std::size_t pieces() const;

    // Marks, in some pieces, where a lowered text may begin, ASCII letters in either case. A text of up to wholeSize
    // bytes does begin there; of longer ones so many bytes do.
    void markStarts(std::string_view lowered, std::size_t firstPiece, std::size_t endPiece);
    static constexpr std::size_t wholeSize = 4;

    // Whether isWanted(place) holds for a marked place among `size` places from `at` on.
    template <typename IsWanted>
    bool any(std::size_t at, std::size_t size, IsWanted isWanted) const;
    bool any(std::size_t at, std::size_t size) const;

private:
    // So many bits can be had at once from any place on.
    static constexpr std::size_t window = 56;

    template <typename Mark>
    void mark(std::size_t firstPiece, std::size_t endPiece, Mark mark);

    std::uint64_t bits(std::size_t at, std::size_t count) const {
        std::uint64_t word;
        std::memcpy(&word, bytes_.data() + at / 8, sizeof word);
        return word >> (at % 8) & ((std::uint64_t{1} << count) - 1);
    }

    std::string_view pool_;
    LargeVector<std::uint8_t> bytes_;
};

inline bool PoolMarks::any(std::size_t at, std::size_t size) const {
    for (; size > window; at += window, size -= window)
        if (bits(at, window) != 0) return true;
    return bits(at, size) != 0;
}

template <typename IsWanted>
bool PoolMarks::any(std::size_t at, std::size_t size, IsWanted isWanted) const {
    for (const std::size_t end = at + size; at < end; at += window) {
        std::uint64_t left = bits(at, std::min(window, end - at));
        for (; left != 0; left &= left - 1)
            if (isWanted(at + static_cast<std::size_t>(std::countr_zero(left)))) return true;
    }
    return false;
}

}  // namespace store
