#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace store {

class NameOrder;

// Sorts things, each known by a number that no other has, by their names; those that compare as the same keep their
// order. Made
// for a million of them: every name is looked at once for a key, and comparing keys is comparing bytes.
void sortByName(std::vector<std::uint32_t>& things, const std::function<std::string_view(std::uint32_t)>& nameOf,
                const NameOrder& order);

}  // namespace store
