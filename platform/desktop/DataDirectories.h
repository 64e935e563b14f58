#pragma once

#include <filesystem>
#include <vector>

namespace platform {

// The data directories below a file system root, in order of precedence. For "/" those of the environment (XDG Base
// Directory Specification 0.8: XDG_DATA_HOME, XDG_DATA_DIRS), Flatpak's and Snap's exports included; for any other root
// its own usr/local/share, usr/share and exports, and nothing of the host's. Any thread.
std::vector<std::filesystem::path> dataDirectories(const std::filesystem::path& root);

// The same without what is one person's: those of the machine, for a service. Their paths begin with `root`.
std::vector<std::filesystem::path> sharedDataDirectories(const std::filesystem::path& root);

}  // namespace platform
