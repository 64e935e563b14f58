#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <initializer_list>

namespace store {

// A fuzzer's inputs are small. In its build they are gone through in parts all the same, as large ones are elsewhere,
// but by one thread, so that an input always takes the same way.
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION
inline constexpr bool isFuzzed = true;
#else
inline constexpr bool isFuzzed = false;
#endif

// The size of a part that is so large for everybody but a fuzzer.
constexpr std::size_t partSize(std::size_t usual) {
    return isFuzzed ? std::max<std::size_t>(usual / 4096, 1) : usual;
}

// Work on the numbers below `count`, any part of which can be done at the same time as the others. Must not throw.
struct Phase {
    std::size_t count;
    std::function<void(std::size_t begin, std::size_t end)> work;
};

// How many parts pay off: as many as the machine has processors, for less than `worthwhile` numbers each fewer.
std::size_t partsWorthwhile(std::size_t count, std::size_t worthwhile);

// Does one phase after the other, each in so many parts at the same time, on threads that live as long as all of it:
// starting one can take as long as a phase. A phase begins when the one before has ended altogether. Parts begin at
// multiples of 64: each has cache lines of its own in an array of bytes.
void inPhases(std::size_t parts, std::initializer_list<Phase> phases);

// Does something for each of so many at the same time, as long as there are threads: otherwise for one after the other.
void inAll(std::size_t parts, const std::function<void(std::size_t part)>& work);

// A single phase, in as many parts as pay off.
void inParts(std::size_t count, std::size_t worthwhile, const std::function<void(std::size_t, std::size_t)>& work);

}  // namespace store
