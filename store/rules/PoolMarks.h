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

// A bitmap of a pool of texts: one bit for each byte, which says whether a condition holds there. Computed 16 bytes at
// a time (SIMD), and a query for a text takes a few instructions. Only a window of the bitmap exists, near the last
// query: query texts in the order of the pool, and it stays in the cache.
class PoolMarks {
public:
    // Marks bytes outside ASCII.
    static PoolMarks ofOtherThanAscii(std::string_view pool);
    // Marks candidates for occurrences of a lowered, non-empty pattern, in any ASCII case. For patterns of up to
    // wholeSize bytes every mark is an occurrence; for longer ones only that many of their bytes are compared.
    static PoolMarks ofStarts(std::string_view pool, std::string_view lowered);
    static constexpr std::size_t wholeSize = 4;

    // Whether one of the `size` bytes from `at` on is marked, and isWanted(offset) holds for it.
    template <typename IsWanted>
    bool any(std::size_t at, std::size_t size, IsWanted isWanted);
    bool any(std::size_t at, std::size_t size);

private:
    // Computes the bits of a stride of text, which is followed by a few more readable bytes.
    using Mark = std::function<void(std::uint8_t* bits, const char* text)>;
    // The number of bits that one load gives at any offset.
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
