#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>

#include "store/files/FileReplacement.h"
#include "store/plist/PropertyList.h"

namespace store {

// A property-list file, read and written whole. A missing file, one that cannot be read and one that holds anything but
// a dictionary read as no dictionary.
// `failed` is set when there may well be a dictionary that could only not be read this time. `index` may be nullptr.
std::optional<Dictionary> readDictionary(const std::filesystem::path& path, std::shared_ptr<ElementIndex> index,
                                         std::error_code& failed);

// Replaces or creates the file in one step, and keeps what is replaced where there is a suffix for it; see
// replaceFile(). Returns whether that went well; if not, an old file is as it was.
bool writeDictionary(const std::filesystem::path& path, const Dictionary& dictionary,
                     const KeptSuffix& keptSuffix = {});

}  // namespace store
