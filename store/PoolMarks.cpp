#include "store/PoolMarks.h"

#include <algorithm>
#include <array>

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

// mark(flags, text) sets the flags of a stride of text, behind which farthestProbe bytes more can be looked at.
template <typename Mark>
PoolMarks::PoolMarks(std::string_view pool, Mark mark) {
    const std::size_t strides = (pool.size() + stride - 1) / stride;
    bytes_.resize(strides * stride / 8 + sizeof(std::uint64_t));
    std::fill_n(bytes_.rbegin(), sizeof(std::uint64_t), std::uint8_t{0});
    inParts(strides, worthwhile, [&](std::size_t first, std::size_t end) {
        Flags flags;
        for (std::size_t each = first; each < end; ++each) {
            const std::string_view text = pool.substr(each * stride, stride + farthestProbe);
            char padded[stride + farthestProbe] = {};
            const bool isWhole = text.size() == sizeof padded;
            if (!isWhole) text.copy(padded, text.size());
            mark(flags, isWhole ? text.data() : padded);
            std::uint8_t* to = bytes_.data() + each * stride / 8;
            for (std::size_t i = 0; i < stride; i += 8) *to++ = packed(flags + i);
        }
    });
}

PoolMarks PoolMarks::ofOtherThanAscii(std::string_view pool) {
    return {pool, [](Flags& flags, const char* text) {
                for (std::size_t i = 0; i < stride; ++i) flags[i] = static_cast<std::uint8_t>(text[i]) >> 7;
            }};
}

PoolMarks PoolMarks::ofStarts(std::string_view pool, std::string_view lowered) {
    const std::size_t last = std::min(lowered.size() - 1, farthestProbe);
    const std::size_t second = std::min<std::size_t>(1, last);
    const std::size_t third = std::min<std::size_t>(2, last);
    const std::array<Probe, wholeSize> probes{lowered[0], lowered[second], lowered[third], lowered[last]};
    return {pool, [=](Flags& flags, const char* text) {
                for (std::size_t i = 0; i < stride; ++i)
                    flags[i] = probes[0].isAt(text + i) & probes[1].isAt(text + second + i) &
                               probes[2].isAt(text + third + i) & probes[3].isAt(text + last + i);
            }};
}

}  // namespace store
