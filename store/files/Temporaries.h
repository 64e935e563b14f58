#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace store {

// Files on their way to their places. They lie beside those and are called ".<file>.vxm-<letters>".

// A name, not to be guessed, for a file on its way to another name in the same folder. Empty when the system gives no
// random numbers.
std::string temporaryName(std::string_view fileName);

// Whether a file is called as one is that is on its way to its place, or was left behind there.
bool isTemporaryName(std::string_view name);

// Removes what replacements that were killed have left in a directory, of every file or only of the one with this name;
// those still at work are left alone.
void removeStaleTemporaries(const std::filesystem::path& directory, std::string_view fileName = {});

}  // namespace store
