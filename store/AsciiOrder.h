#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

struct UCollator;

namespace store {

// For each ASCII character its place in a collator's order: characters that compare as the same have the same place,
// those that the collator passes over have 0.
inline constexpr std::size_t asciiCount = 128;
using AsciiOrder = std::array<std::uint8_t, asciiCount>;

// Nothing when the collator does more with ASCII than comparing character by character: where "ch" or "lj" is a letter
// of its own, or numbers are compared as numbers.
std::optional<AsciiOrder> asciiOrder(const UCollator* collator);

}  // namespace store
