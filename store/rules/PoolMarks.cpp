#include "store/rules/PoolMarks.h"

#include <algorithm>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace store {

namespace {

// Bytes of text marked by one call of a Mark, and the size of the window in strides.
constexpr std::size_t stride = 4096;
constexpr std::size_t stridesAtOnce = 4;
constexpr std::size_t farthestProbe = 63;
constexpr std::size_t step = 16;  // bytes of a SIMD register

#if defined(__SSE2__)

using Places = __m128i;

// Compares 16 bytes, with the bits of `set` set, with `wanted`.
Places placesOf(const char* text, std::uint8_t wanted, std::uint8_t set) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    return _mm_cmpeq_epi8(_mm_or_si128(bytes, _mm_set1_epi8(static_cast<char>(set))),
                          _mm_set1_epi8(static_cast<char>(wanted)));
}

std::uint16_t bitsOf(Places places) {
    return static_cast<std::uint16_t>(_mm_movemask_epi8(places));
}

#else

using Places = unsigned;

Places placesOf(const char* text, std::uint8_t wanted, std::uint8_t set) {
    Places places = 0;
    for (std::size_t i = 0; i < step; ++i)
        places |= unsigned{(static_cast<std::uint8_t>(text[i]) | set) == wanted} << i;
    return places;
}

std::uint16_t bitsOf(Places places) {
    return static_cast<std::uint16_t>(places);
}

#endif

Places otherThanAscii(const char* text) {
    return placesOf(text, 0xFF, 0x7F);
}

// A byte of a lowered pattern; matches ASCII letters of either case.
struct Probe {
    Probe(char lowered)
        : wanted(static_cast<std::uint8_t>(lowered)), caseBit(lowered >= 'a' && lowered <= 'z' ? 0x20 : 0) {}
    Places places(const char* text) const { return placesOf(text, wanted, caseBit); }

    std::uint8_t wanted;
    std::uint8_t caseBit;
};

// Computes the bits of a stride. marked(text) gives those of 16 bytes.
template <class Marked>
void markStride(std::uint8_t* bits, const char* text, Marked marked) {
    for (std::size_t i = 0; i < stride; i += step) {
        const std::uint16_t sixteen = bitsOf(marked(text + i));
        std::memcpy(bits + i / 8, &sixteen, sizeof sixteen);
    }
}

}  // namespace

PoolMarks::PoolMarks(std::string_view pool, Mark mark) : pool_(pool), mark_(std::move(mark)) {}

void PoolMarks::move(std::size_t begin, std::size_t end) {
    begin_ = begin / stride * stride;
    const std::size_t strides = std::max((end - begin_ + stride - 1) / stride, stridesAtOnce);
    end_ = begin_ + strides * stride;
    bytes_.resize(strides * stride / 8 + sizeof(std::uint64_t));
    std::fill_n(bytes_.rbegin(), sizeof(std::uint64_t), std::uint8_t{0});
    for (std::size_t at = begin_; at < end_; at += stride) {
        const std::string_view text = pool_.substr(std::min(at, pool_.size()), stride + farthestProbe);
        char padded[stride + farthestProbe] = {};
        const bool isWhole = text.size() == sizeof padded;
        if (!isWhole) text.copy(padded, text.size());
        mark_(bytes_.data() + (at - begin_) / 8, isWhole ? text.data() : padded);
    }
}

PoolMarks PoolMarks::ofOtherThanAscii(std::string_view pool) {
    return {pool, [](auto* bits, auto* text) { markStride(bits, text, otherThanAscii); }};
}

PoolMarks PoolMarks::ofStarts(std::string_view pool, std::string_view lowered) {
    const std::size_t last = std::min(lowered.size() - 1, farthestProbe);
    const Probe first(lowered[0]);
    const Probe end(lowered[last]);
    if (last <= 1) {
        return {pool, [=](auto* bits, auto* text) {
                    markStride(bits, text, [=](const char* at) { return first.places(at) & end.places(at + last); });
                }};
    }
    const Probe second(lowered[1]);
    const Probe third(lowered[2]);
    return {pool, [=](auto* bits, auto* text) {
                markStride(bits, text, [=](const char* at) {
                    return first.places(at) & second.places(at + 1) & third.places(at + 2) & end.places(at + last);
                });
            }};
}

}  // namespace store
