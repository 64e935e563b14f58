#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace engine {

// What the daemon's configuration has that keeps our rules from working as they are meant: for each setting one
// sentence that says what to set. Empty when nothing is wrong.
//
// `configuration` is the one file that the daemon (1.5.8) reads, a conffile of its package and the administrator's: it
// is read here and never written. `rules` is the folder in which our rules are. Any thread.
std::vector<std::string> complaintsAbout(const std::filesystem::path& configuration,
                                         const std::filesystem::path& rules);

}  // namespace engine
