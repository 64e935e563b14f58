#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>

#include "store/files/FileReplacement.h"
#include "store/plist/PropertyList.h"

namespace store {

// Reads and writes property-list files whose outermost value is a dictionary.

// Nothing when the file is missing, cannot be read or holds no dictionary. `failed` is set when the system refused to
// read it, so that it may hold one. `index` may be nullptr.
std::optional<Dictionary> readDictionary(const std::filesystem::path& path, std::shared_ptr<ElementIndex> index,
                                         std::error_code& failed);

// Replaces or creates the file atomically, see replaceFile(). Returns false on an error; the old file is then
// unchanged.
bool writeDictionary(const std::filesystem::path& path, const Dictionary& dictionary,
                     const KeptSuffix& keptSuffix = {});

}  // namespace store
