#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

struct UCollator;

namespace store {

// A collator's order of ASCII text: for each character, and for each two that are a letter of their own ("ch" in
// Czech), a place. Those that compare as the same have the same place, those that the collator passes over have 0.
struct AsciiOrder {
    struct Pair {
        char first;
        char second;
        std::uint8_t place;
    };

    static constexpr std::size_t characterCount = 128;
    std::array<std::uint8_t, characterCount> places{};
    std::array<bool, characterCount> beginsPair{};
    std::vector<Pair> pairs;

    const Pair* pair(char first, char second) const;

    // Writes a text's places, without those that are 0, and a 0 behind them: at most one byte more than the text has.
    // Texts compare as these bytes do. Returns false when there is a character that is not ASCII.
    bool writeKey(std::string_view text, char* key) const;
};

// Nothing when the collator does more with ASCII than that: where three characters are a letter, or numbers are
// compared as numbers.
std::optional<AsciiOrder> asciiOrder(const UCollator* collator);

}  // namespace store
