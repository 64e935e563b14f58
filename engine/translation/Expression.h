#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/translation/DaemonRule.h"

namespace engine {

// Regular expressions in the daemon's syntax (RE2). Pure functions, any thread.

// One that matches what any of these do, as a group. There is at least one.
std::string anyOf(const std::vector<std::string>& expressions);
// One that matches any of these texts, as a group. There is at least one.
std::string anyTextOf(const std::vector<std::string>& texts);

// That the operand is one of the texts, of which there is at least one.
Condition isOneOf(std::string operand, const std::vector<std::string>& texts, bool isCaseSensitive);

}  // namespace engine
