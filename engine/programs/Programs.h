#pragma once

#include <compare>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace engine {

// How a running process is recognised as an app's. Everything that is not empty must hold.
struct Program {
    std::string path;     // what /proc/PID/exe leads to
    std::string command;  // a regular expression (RE2, lower-case escapes) on the arguments joined by single spaces
    std::string flatpak;  // FLATPAK_ID in its environment
    std::string snap;     // SNAP_INSTANCE_NAME in its environment

    auto operator<=>(const Program&) const = default;
};

// Each app that was asked for stands in one of the two, by its identifier: its desktop file id without ".desktop".
struct Programs {
    std::map<std::string, std::vector<Program>> known;
    std::map<std::string, std::string> unknown;  // why the app is left alone: a clause for people
    std::map<std::string, std::string> names;    // of the known ones, as their entries name them
};

// The programs of these apps, as their desktop entries (Desktop Entry Specification 1.5) below `root` start them. Only
// entries that are installed for everybody count: a person's own could widen what another's firewall means. An app is
// unknown rather than guessed at, and its programs are nobody else's; docs/programs.md says what that means.
//
// Links and scripts are followed below `root`, and paths are those that the machine would show if `root` were its "/".
// What does not exist below another root than "/" is the host's, so that a device in a directory can name the host's
// programs. Nothing is executed or written; what cannot be read counts as not there. Any thread; reads every entry.
Programs findPrograms(const std::vector<std::string>& apps, const std::filesystem::path& root);

}  // namespace engine
