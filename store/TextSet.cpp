#include "store/TextSet.h"

#include <cstring>
#include <random>

namespace store {

namespace {

__extension__ typedef unsigned __int128 Wide;

constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;
constexpr std::size_t firstSize = 1024;

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

TextSet::TextSet() : slots_(firstSize) {
    std::random_device chance;
    seed_ = std::uint64_t{chance()} << 32 | chance();
}

std::uint32_t TextSet::hashOf(std::string_view text) const {
    std::uint64_t hash = seed_ ^ text.size();
    const char* p = text.data();
    std::size_t rest = text.size();
    for (; rest > 8; p += 8, rest -= 8) hash = folded(hash ^ word(p, 8), seed_ ^ odd);
    if (rest > 0) hash = folded(hash ^ word(p, rest), seed_ ^ odd);
    return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

void TextSet::grow() {
    std::vector<Slot> old(slots_.size() * 2);
    old.swap(slots_);
    for (const Slot& slot : old) {
        if (slot.number == none) continue;
        std::size_t at = slot.hash & (slots_.size() - 1);
        while (slots_[at].number != none) at = (at + 1) & (slots_.size() - 1);
        slots_[at] = slot;
    }
}

}  // namespace store
