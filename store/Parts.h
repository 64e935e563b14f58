#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>

namespace store {

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
