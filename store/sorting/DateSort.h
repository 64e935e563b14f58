#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace store {

// Sorts distinct indices by date, the latest first; stable. dateOf(index) is larger for a later date and INT64_MIN for
// none, which comes last; it is called by several threads. A parallel radix sort for up to a million indices.
void sortByDate(std::vector<std::uint32_t>& indices, const std::function<std::int64_t(std::uint32_t)>& dateOf);

}  // namespace store
