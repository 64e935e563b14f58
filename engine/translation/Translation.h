#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Decision.h"
#include "engine/programs/Programs.h"
#include "engine/translation/DaemonRule.h"

namespace engine {

// All our rules are called this and more; no other maker's is.
inline constexpr std::string_view rulePrefix = "vexmor-";

// How many hosts an expression holds. More whole hosts go into a file, more patterns into several rules.
inline constexpr std::size_t expressionHosts = 1000;

// The configuration as rules of the daemon, in the order of their names. The first that matches decides as decide()
// does; the last one matches everything and leaves it to other makers' rules. Apps without a known program have no
// rules.
//
// A rule without a file has a digest of its content in its name, so rules of the same name are equal. One with a file
// keeps its name while the hosts in it change. The file is one, however large: for each one more that goes, the daemon
// would let all connections wait for up to 4 s.
//
// A pure function, any thread.
std::vector<DaemonRule> translate(const Configuration& configuration,
                                  const std::map<std::string, std::vector<Program>>& programs, bool isOnWiFi,
                                  std::size_t limit = expressionHosts);

}  // namespace engine
