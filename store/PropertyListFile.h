#pragma once

#include <filesystem>
#include <optional>

#include "store/PropertyList.h"

namespace store {

// A property-list file, read and written whole. A missing file, one that cannot be read and one that holds anything but
// a dictionary read as no dictionary.
std::optional<Dictionary> readDictionary(const std::filesystem::path& path);

// Replaces or creates the file in one step; see replaceFile(). Returns whether that went well; if not, an old file is
// as it was.
bool writeDictionary(const std::filesystem::path& path, const Dictionary& dictionary);

}  // namespace store
