#include "store/rules/TextSet.h"

#include <bit>
#include <cstring>
#include <random>

namespace store {

namespace {

__extension__ typedef unsigned __int128 Wide;

constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;

std::uint64_t folded(std::uint64_t a, std::uint64_t b) {
    Wide product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

std::uint64_t word(const char* p, std::size_t size) {
    std::uint64_t word = 0;
    std::memcpy(&word, p, size);
    return word;
}

}  // namespace

TextHash::TextHash() {
    std::random_device random;
    seed_ = std::uint64_t{random()} << 32 | random();
}

std::uint32_t TextHash::operator()(std::string_view text) const {
    std::uint64_t hash = seed_ ^ text.size();
    const char* p = text.data();
    std::size_t rest = text.size();
    for (; rest > 8; p += 8, rest -= 8) hash = folded(hash ^ word(p, 8), seed_ ^ odd);
    if (rest > 0) hash = folded(hash ^ word(p, rest), seed_ ^ odd);
    return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

// A load factor of at most one half: probing always ends at an empty slot, usually soon.
TextSet::TextSet(std::size_t count) : slots_(std::bit_ceil(2 * count + 1), none) {}

}  // namespace store
