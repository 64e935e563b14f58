#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace bench {

// Numbers that look random and are the same every time.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        std::uint64_t mixed = state_ += 0x9E3779B97F4A7C15;
        mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9;
        mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EB;
        return mixed ^ mixed >> 31;
    }
    std::size_t below(std::size_t bound) { return static_cast<std::size_t>(next() % bound); }
    bool percent(unsigned share) { return below(100) < share; }

    template <class Element, std::size_t size>
    const Element& oneOf(const std::array<Element, size>& elements) {
        return elements[below(size)];
    }

private:
    std::uint64_t state_;
};

}  // namespace bench
