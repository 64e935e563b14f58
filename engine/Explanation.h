#pragma once

#include <string>
#include <string_view>

#include "engine/Decision.h"

namespace engine {

// A decision in words for people, and for programs as one JSON object. Any thread.

// "allowed", "denied" or "left alone".
std::string_view wordOf(Verdict verdict);

// What decided, as a clause: `its own deny rule "*tracker.example"`, `"Deny All Connections" is on for it`.
std::string reasonOf(const Decision& decision);

// {"app", "host", "verdict": "allow" | "deny" | "leave", "cause", "rule"}, one line; "cause" is the name of the Cause,
// "rule" is missing where no rule decides. `host` is what was asked for, as it was written.
std::string jsonOf(const Decision& decision, std::string_view app, std::string_view host);

}  // namespace engine
