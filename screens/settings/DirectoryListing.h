#pragma once

#include <QString>
#include <filesystem>
#include <string>
#include <vector>

namespace screens {

// The names of all entries of a folder, as bytes and in the order of their bytes; files on their way into the folder
// are not among them. No entry is opened. Empty when the folder is missing or cannot be read.
std::vector<std::string> entriesOf(const std::filesystem::path& directory);

// A name as it can be shown on one line: bytes that are no UTF-8, and control characters, become U+FFFD.
QString shownName(const std::string& entry);

}  // namespace screens
