#pragma once

#include <cstddef>
#include <functional>

namespace store {

// Splits the numbers below `count` into as many parts as the machine has processors and calls work(begin, end) for each
// at the same time, on threads that end before this returns; for less than `worthwhile` numbers a processor on fewer.
// Parts begin at multiples of 64: each has cache lines of its own in an array of bytes. work must not throw.
void inParts(std::size_t count, std::size_t worthwhile, const std::function<void(std::size_t, std::size_t)>& work);

}  // namespace store
