#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace store {

class NameOrder;

// Sorts distinct indices by the names they refer to; stable. nameOf(index) is called by several threads. A parallel
// radix sort of sort keys, made once for each name, for up to a million indices.
void sortByName(std::vector<std::uint32_t>& indices, const std::function<std::string_view(std::uint32_t)>& nameOf,
                const NameOrder& order);

}  // namespace store
