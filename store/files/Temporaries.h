#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace store {

// Names of the temporary files that replacements write: ".<file>.vxm-<letters>", in the directory of the file.

// A random, unpredictable temporary name for `fileName`. Empty when the system gives no random numbers.
std::string temporaryName(std::string_view fileName);

// Whether the name has the form of a temporary file's.
bool isTemporaryName(std::string_view name);

// Removes temporary files that killed processes left in the directory: those of `fileName`, or of all files when it is
// empty. Files that a running replacement has locked are kept.
void removeStaleTemporaries(const std::filesystem::path& directory, std::string_view fileName = {});

}  // namespace store
