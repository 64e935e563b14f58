#include "store/PoolMarks.h"

#include <algorithm>

#include "store/Parts.h"

namespace store {

namespace {

// So many places are looked at in one go, by a loop that a compiler makes vector instructions of, since its length is
// fixed and it has no branch.
constexpr std::size_t stride = 4096;
constexpr std::size_t farthestProbe = 63;
constexpr std::size_t worthwhile = 256;  // strides, for a thread of their own
using Flags = std::uint8_t[stride];

// The flags of eight places, each 0 or 1, as the bits of a byte.
std::uint8_t packed(const std::uint8_t* flags) {
    static_assert(std::endian::native == std::endian::little);
    constexpr std::uint64_t gather = 0x0102040810204080;
    std::uint64_t word;
    std::memcpy(&word, flags, sizeof word);
    return static_cast<std::uint8_t>((word * gather) >> 56);
}

// A byte of a lowered text; ASCII letters stand for either case.
struct Probe {
    Probe(char lowered)
        : wanted(static_cast<std::uint8_t>(lowered)), caseBit(lowered >= 'a' && lowered <= 'z' ? 0x20 : 0) {}
    bool isAt(const char* text) const { return (static_cast<std::uint8_t>(*text) | caseBit) == wanted; }

    std::uint8_t wanted;
    std::uint8_t caseBit;
};

}  // namespace

PoolMarks::PoolMarks(std::string_view pool) : pool_(pool), bytes_(pieces() * stride / 8 + sizeof(std::uint64_t)) {
    std::fill_n(bytes_.rbegin(), sizeof(std::uint64_t), std::uint8_t{0});
}

std::size_t PoolMarks::pieces() const {
    return (pool_.size() + stride - 1) / stride;
}

// mark(flags, text) sets the flags of a stride of text, behind which farthestProbe bytes more can be looked at.
template <typename Mark>
void PoolMarks::mark(std::size_t firstPiece, std::size_t endPiece, Mark mark) {
    Flags flags;
    for (std::size_t each = firstPiece; each < endPiece; ++each) {
        const std::string_view text = pool_.substr(each * stride, stride + farthestProbe);
        char padded[stride + farthestProbe] = {};
        const bool isWhole = text.size() == sizeof padded;
        if (!isWhole) text.copy(padded, text.size());
        mark(flags, isWhole ? text.data() : padded);
        std::uint8_t* to = bytes_.data() + each * stride / 8;
        for (std::size_t i = 0; i < stride; i += 8) *to++ = packed(flags + i);
    }
}

PoolMarks PoolMarks::ofOtherThanAscii(std::string_view pool) {
    PoolMarks marks(pool);
    inParts(marks.pieces(), worthwhile, [&marks](std::size_t first, std::size_t end) {
        marks.mark(first, end, [](Flags& flags, const char* text) {
            for (std::size_t i = 0; i < stride; ++i) flags[i] = static_cast<std::uint8_t>(text[i]) >> 7;
        });
    });
    return marks;
}

void PoolMarks::markStarts(std::string_view lowered, std::size_t firstPiece, std::size_t endPiece) {
    const std::size_t last = std::min(lowered.size() - 1, farthestProbe);
    const Probe first(lowered[0]);
    const Probe end(lowered[last]);
    if (last <= 1) {
        mark(firstPiece, endPiece, [=](Flags& flags, const char* text) {
            for (std::size_t i = 0; i < stride; ++i) flags[i] = first.isAt(text + i) & end.isAt(text + last + i);
        });
        return;
    }
    const Probe second(lowered[1]);
    const Probe third(lowered[2]);
    mark(firstPiece, endPiece, [=](Flags& flags, const char* text) {
        for (std::size_t i = 0; i < stride; ++i)
            flags[i] =
                first.isAt(text + i) & second.isAt(text + 1 + i) & third.isAt(text + 2 + i) & end.isAt(text + last + i);
    });
}

}  // namespace store
