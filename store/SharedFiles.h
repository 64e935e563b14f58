#pragma once

#include <filesystem>

namespace store {

// The places of the files that the app and the firewall engine share, below the root of a file system. Pure functions.

enum class File { appRules, globalRules, guiSettings };

std::filesystem::path preferencesFolder(const std::filesystem::path& root);
std::filesystem::path pathOf(File file, const std::filesystem::path& root);
// The firewall is off while this file exists.
std::filesystem::path disabledMarker(const std::filesystem::path& root);
std::filesystem::path logFile(const std::filesystem::path& root);
// Host lists to import: whatever lies there is one.
std::filesystem::path listFolder(const std::filesystem::path& root);

}  // namespace store
