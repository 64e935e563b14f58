#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace store {

// Sixteen bytes in a vector register, compared all at once. The compiler's vector types: the same source becomes SSE2
// on x86 and NEON on ARM. Bytes are signed; a comparison gives -1 where it holds and 0 elsewhere, to be combined by &
// and |.
using Bytes16 [[gnu::vector_size(16)]] = signed char;

// Sixteen times the same byte.
inline Bytes16 sixteen(char byte) {
    return Bytes16{} + static_cast<signed char>(byte);
}

inline Bytes16 loadBytes(const char* p) {
    Bytes16 bytes;
    std::memcpy(&bytes, p, sizeof bytes);
    return bytes;
}

// A text of less than sixteen bytes, followed by zeros.
inline Bytes16 loadShort(std::string_view text) {
    char padded[sizeof(Bytes16)] = {};
    text.copy(padded, sizeof padded);
    return loadBytes(padded);
}

// The positions, 0 to 15, at which a comparison holds. Each byte is narrowed to four bits of a word, since that is two
// or three instructions everywhere; narrowing it to one bit is cheap on x86 only.
class Positions {
public:
    explicit Positions(Bytes16 comparison) {
        static_assert(std::endian::native == std::endian::little);
        using Pairs [[gnu::vector_size(16)]] = std::uint16_t;
        using Halves [[gnu::vector_size(8)]] = std::uint8_t;
        bits_ =
            std::bit_cast<std::uint64_t>(__builtin_convertvector(std::bit_cast<Pairs>(comparison) >> width, Halves));
    }

    bool empty() const { return bits_ == 0; }
    // 16 when empty.
    std::size_t first() const { return static_cast<std::size_t>(std::countr_zero(bits_) / width); }
    void removeFirst() { bits_ &= ~(std::uint64_t{0xF} << std::countr_zero(bits_)); }

private:
    static constexpr int width = 4;

    std::uint64_t bits_;
};

// The offset of the first byte for which the comparison holds, the text's size when there is none. `compare` is called
// with sixteen bytes each time: some of them twice, or zeros behind a short text.
template <class Compare>
std::size_t findByte(std::string_view text, Compare compare) {
    constexpr std::size_t step = sizeof(Bytes16);
    if (text.size() < step) return std::min(Positions(compare(loadShort(text))).first(), text.size());
    for (std::size_t at = 0;; at = std::min(at + step, text.size() - step)) {
        if (const Positions found(compare(loadBytes(text.data() + at))); !found.empty()) return at + found.first();
        if (at + step == text.size()) return text.size();
    }
}

}  // namespace store
