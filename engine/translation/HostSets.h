#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/plist/PropertyList.h"

namespace engine {

// Hosts that one decision holds for. Each vector is sorted and without repeats.
struct HostSet {
    bool allows = false;
    std::uint16_t port = 0;  // 0: every port
    unsigned layer = 0;
    std::vector<std::string> names;
    std::vector<std::string> addresses;
    std::vector<std::string> namesAndBelow;
    std::vector<std::string> below;
    bool hasEveryHost = false;
};

// The entries of an allow and a deny list as sets that are tried one after another: the first that has the destination
// decides, and decides what the closest entry says. Sets of the same layer and verdict differ in their port and may be
// tried in any order. Entries that are no patterns are left out.
//
// Whole hosts make up the first four layers: denied on a port, allowed on a port, denied, allowed. Patterns follow in
// layers of alternating verdicts, as few as will do: a pattern comes behind the closer ones of the other verdict that
// have hosts in common with it, and these are the patterns whose names end in its own.
//
// Pure functions, any thread. Takes O(n log n) for n entries.
std::vector<HostSet> hostSetsInOrder(const store::Value* allow, const store::Value* deny);

}  // namespace engine
