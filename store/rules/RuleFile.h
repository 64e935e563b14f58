#pragma once

#include <filesystem>
#include <optional>
#include <system_error>

#include "store/plist/PropertyList.h"

namespace store {

// readDictionary() for files that hold rule lists, perhaps of a million entries: these are read by several threads.
std::optional<Dictionary> readRuleFile(const std::filesystem::path& path);
std::optional<Dictionary> readRuleFile(const std::filesystem::path& path, std::error_code& failed);

}  // namespace store
