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

// How many whole hosts an expression holds; more go into a file.
inline constexpr std::size_t expressionHosts = 1000;
// How many patterns an expression holds; more go into several rules. The daemon compiles an expression whenever it
// changes, 0.2 s for 32,768, and asks each rule at each connection: 3 ms for 120,000 patterns in expressions of 1,000,
// 0.05 ms in these.
inline constexpr std::size_t expressionPatterns = 32768;

// The configuration as rules of the daemon, in the order of their names. The first that matches decides as decide()
// does; the last one matches everything and leaves it to other makers' rules. Apps without a known program have no
// rules.
//
// A rule has a digest of its content in its name, but of its file: rules of the same name differ in the hosts of their
// files at most. A rule that changed in its place would be without its hosts until the daemon had read them again. The
// file is one, however large: for each one more that goes, the daemon would let all connections wait for up to 4 s.
//
// A pure function, any thread.
std::vector<DaemonRule> translate(const Configuration& configuration,
                                  const std::map<std::string, std::vector<Program>>& programs, bool isOnWiFi,
                                  std::size_t mostHosts = expressionHosts,
                                  std::size_t mostPatterns = expressionPatterns);

}  // namespace engine
