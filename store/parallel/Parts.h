#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <initializer_list>

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

// Work on the indices from 0 to `count`. Its ranges are independent of each other: `work` is called by several threads
// at once, each with a range of its own. Must not throw.
struct Phase {
    std::size_t count;
    std::function<void(std::size_t begin, std::size_t end)> work;
};

// The number of parts for `count` indices: one for each processor, but no part smaller than `worthwhile`; at least 1.
std::size_t partsWorthwhile(std::size_t count, std::size_t worthwhile);

// Runs the phases in order, each in `parts` parts in parallel, with a barrier between two phases. All phases share
// their threads, since starting a thread can take as long as a phase. Parts begin at multiples of 64, so that no two
// parts write to the same cache line of a byte array. Where no thread can be started, the calling thread does its part.
void inPhases(std::size_t parts, std::initializer_list<Phase> phases);

// Calls work(0) to work(parts - 1) in parallel, or in sequence where no threads can be started. Must not throw.
void inAll(std::size_t parts, const std::function<void(std::size_t part)>& work);

// One phase, in partsWorthwhile(count, worthwhile) parts.
void inParts(std::size_t count, std::size_t worthwhile, const std::function<void(std::size_t, std::size_t)>& work);

}  // namespace store
