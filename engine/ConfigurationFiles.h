#pragma once

#include <filesystem>

#include "engine/Decision.h"

namespace engine {

// What the shared files below the root of a file system hold now. Changes nothing. Any thread.
Configuration readConfiguration(const std::filesystem::path& root);

}  // namespace engine
