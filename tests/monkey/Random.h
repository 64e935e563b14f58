#pragma once

#include <cstdint>
#include <random>

namespace monkey {

// The dice. One seed gives one sequence, on every machine.
class Random {
public:
    explicit Random(std::uint64_t seed) : engine_(seed) {}

    int below(int count) { return int(engine_() % std::uint64_t(count)); }
    int between(int least, int most) { return least + below(most - least + 1); }
    bool chance(int percent) { return below(100) < percent; }
    template <class Container>
    const auto& oneOf(const Container& container) {
        return *std::next(std::begin(container), below(int(std::size(container))));
    }

private:
    std::mt19937_64 engine_;
};

}  // namespace monkey
