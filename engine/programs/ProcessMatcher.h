#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "engine/programs/Programs.h"

namespace engine {

// A running process, as the daemon sees it.
struct Process {
    std::string path;                    // what /proc/PID/exe leads to
    std::vector<std::string> arguments;  // the program's name first
    std::map<std::string, std::string> environment;
};

// Tells which app a process belongs to, by the same conditions as the daemon's rules. Immutable; any thread.
class ProcessMatcher {
public:
    explicit ProcessMatcher(const std::map<std::string, std::vector<Program>>& programs);
    ~ProcessMatcher();
    ProcessMatcher(const ProcessMatcher&) = delete;
    ProcessMatcher& operator=(const ProcessMatcher&) = delete;

    // The app's identifier, of several the first in alphabetical order; nothing when it is none of theirs.
    std::optional<std::string> appOf(const Process& process) const;

private:
    struct Candidate;
    std::vector<Candidate> candidates_;
};

}  // namespace engine
