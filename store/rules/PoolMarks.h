#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string_view>

#include "store/sorting/LargeVector.h"

namespace store {

// A bit for every byte of a pool of texts, which says whether something stands there. Made sixteen at a time, they
// answer for each of a million texts in a few instructions. Only some bits are there at a time, near those that were
// asked for last: ask for texts in the order in which they lie in the pool, and the bits never leave the cache.
class PoolMarks {
public:
    // Marks the bytes that are no ASCII characters.
    static PoolMarks ofOtherThanAscii(std::string_view pool);
    // Marks where a lowered text, which is not empty, may begin, ASCII letters in either case. A text of up to
    // wholeSize bytes does begin there; of longer ones so many bytes do.
    static PoolMarks ofStarts(std::string_view pool, std::string_view lowered);
    static constexpr std::size_t wholeSize = 4;

    // Whether isWanted(place) holds for a marked place among `size` places from `at` on.
    template <typename IsWanted>
    bool any(std::size_t at, std::size_t size, IsWanted isWanted);
    bool any(std::size_t at, std::size_t size);

private:
    // Sets the bits of a stride of text, behind which some bytes more can be looked at.
    using Mark = std::function<void(std::uint8_t* bits, const char* text)>;
    // So many bits can be had at once from any place on.
    static constexpr std::size_t window = 56;

    PoolMarks(std::string_view pool, Mark mark);

    void cover(std::size_t begin, std::size_t end) {
        if (begin < begin_ || end > end_) move(begin, end);
    }
    void move(std::size_t begin, std::size_t end);

    std::uint64_t bits(std::size_t at, std::size_t count) const {
        std::uint64_t word;
        std::memcpy(&word, bytes_.data() + (at - begin_) / 8, sizeof word);
        return word >> (at % 8) & ((std::uint64_t{1} << count) - 1);
    }

    std::string_view pool_;
    Mark mark_;
    std::size_t begin_ = 0;  // of what is marked
    std::size_t end_ = 0;
    LargeVector<std::uint8_t> bytes_;
};

inline bool PoolMarks::any(std::size_t at, std::size_t size) {
    if (size == 0) return false;
    cover(at, at + size);
    for (; size > window; at += window, size -= window)
        if (bits(at, window) != 0) return true;
    return bits(at, size) != 0;
}

template <typename IsWanted>
bool PoolMarks::any(std::size_t at, std::size_t size, IsWanted isWanted) {
    if (size == 0) return false;
    cover(at, at + size);
    for (const std::size_t end = at + size; at < end; at += window) {
        std::uint64_t left = bits(at, std::min(window, end - at));
        for (; left != 0; left &= left - 1)
            if (isWanted(at + static_cast<std::size_t>(std::countr_zero(left)))) return true;
    }
    return false;
}

}  // namespace store
