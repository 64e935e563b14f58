#pragma once

#include <compare>
#include <map>
#include <string>
#include <vector>

namespace engine {

// How a running process is recognised as an app's. Everything that is not empty must hold.
struct Program {
    std::string path;     // what /proc/PID/exe leads to
    std::string command;  // a regular expression (RE2) for the arguments, joined by spaces
    std::string flatpak;  // FLATPAK_ID in its environment
    std::string snap;     // SNAP_INSTANCE_NAME in its environment

    auto operator<=>(const Program&) const = default;
};

// The programs of apps, by the app's identifier.
using ProgramsByApp = std::map<std::string, std::vector<Program>, std::less<>>;

}  // namespace engine
