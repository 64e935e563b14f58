#pragma once

#include <cstdint>
#include <random>

namespace monkey {

// A row of a table of what can happen.
template <class Act>
struct Weighted {
    int weight;
    Act act;
};

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
    template <class T>
    T oneOf(std::initializer_list<T> items) {
        return *std::next(items.begin(), below(int(items.size())));
    }
    // What one of the rows does, each as often as its weight says.
    template <class Table>
    auto weighted(const Table& table) {
        int sum = 0;
        for (const auto& row : table) sum += row.weight;
        int drawn = below(sum);
        auto row = std::begin(table);
        while (drawn >= row->weight) drawn -= (row++)->weight;
        return row->act;
    }

private:
    std::mt19937_64 engine_;
};

}  // namespace monkey
