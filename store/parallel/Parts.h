#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>

namespace store {

// Splits work over an index range among threads, one for each processor, and waits for all of them.

// In the fuzz build, small inputs are split as large ones are elsewhere, but one thread does all parts: the same input
// always takes the same path.
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
inline constexpr bool isFuzzed = true;
#else
inline constexpr bool isFuzzed = false;
#endif

// A minimum part size, scaled down in the fuzz build.
constexpr std::size_t partSize(std::size_t usual) {
    return isFuzzed ? std::max<std::size_t>(usual / 4096, 1) : usual;
}

// The number of parts for `count` indices: one for each processor, but no part smaller than `worthwhile`; at least 1.
std::size_t partsWorthwhile(std::size_t count, std::size_t worthwhile);

// Calls work(0) to work(parts - 1) in parallel, or in sequence where no threads can be started. Must not throw.
void inAll(std::size_t parts, const std::function<void(std::size_t part)>& work);

// Splits the indices from 0 to `count` into partsWorthwhile(count, worthwhile) ranges and calls work(begin, end) with
// each, in parallel. Ranges begin at multiples of 64, so that no two threads write to the same cache line of a byte
// array. Must not throw.
void inParts(std::size_t count, std::size_t worthwhile, const std::function<void(std::size_t, std::size_t)>& work);

}  // namespace store
