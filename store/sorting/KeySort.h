#pragma once

#include <cstdint>
#include <vector>

#include "store/sorting/LargeVector.h"

namespace store {

// One of many things that are sorted, each known by a number, by a key of 8 bytes or by one that lies in a block of
// keys: bytes other than 0, and a 0 behind them.
struct Keyed {
    std::uint64_t part;    // a key of 8 bytes; what a sort by longer ones needs
    std::uint32_t offset;  // of a longer key
    std::uint32_t place;   // in the order before
};

// So many bytes behind the last key's 0 are looked at as well, whatever they are.
inline constexpr std::size_t behindKeys = sizeof Keyed::part;

// The things in the order of their numbers, which is that in which what they stand for lies in memory: a million are
// looked at several times as fast as in the order of their places. No number is there twice; takes memory for all
// numbers up to the largest.
LargeVector<Keyed> keyedByNumber(const std::vector<std::uint32_t>& things);

// Both sort things in any order; those with equal keys come in the order of their places. No two keys are compared as
// long as many are alike: things are brought together byte by byte.
void sortByParts(LargeVector<Keyed>& things);
void sortByKeys(LargeVector<Keyed>& things, const char* keys);

}  // namespace store
