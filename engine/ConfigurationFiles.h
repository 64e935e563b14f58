#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "engine/Decision.h"

namespace engine {

// What the shared files below the root of a file system hold now. Changes nothing. Any thread. `unreadable` gets the
// files that are there and count as missing, by their paths, and why: a clause for people.
Configuration readConfiguration(const std::filesystem::path& root);
Configuration readConfiguration(const std::filesystem::path& root, std::map<std::string, std::string>& unreadable);

}  // namespace engine
