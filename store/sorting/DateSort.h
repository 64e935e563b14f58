#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace store {

// Sorts things, each known by a number that no other has, by their dates, the latest first; things with equal dates
// keep their order. `dateOf` gives a larger number for a later date, INT64_MIN for none, and is called by several
// threads at once. Made for a million of them; see sortByName(), its twin.
void sortByDate(std::vector<std::uint32_t>& things, const std::function<std::int64_t(std::uint32_t)>& dateOf);

}  // namespace store
