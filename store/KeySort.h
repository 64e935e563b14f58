#pragma once

#include <cstdint>
#include <vector>

#include "store/LargeVector.h"

namespace store {

// A thing and where its key lies in a block of keys. A key is bytes other than 0, and a 0 behind them.
struct Keyed {
    std::uint64_t part;    // at the sort's disposal
    std::uint32_t offset;  // of the key
    std::uint32_t place;   // in the order before
};

// So many bytes behind the last key's 0 are looked at as well, whatever they are.
inline constexpr std::size_t behindKeys = sizeof Keyed::part;

// Sorts things, given in the order of their places, by the bytes of their keys; things with equal keys keep their
// order. No two keys are compared as long as many are alike: things are brought together byte by byte.
void sortByKeys(LargeVector<Keyed>& things, const char* keys);

}  // namespace store
