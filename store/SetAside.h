#pragma once

#include <filesystem>
#include <string_view>

namespace store {

// A file that is about to be replaced whole, by something that was not made from it, is kept under a second name: its
// own with one of these behind it.
inline constexpr std::string_view damagedSuffix = ".damaged";    // what was no dictionary, or could not be read
inline constexpr std::string_view previousSuffix = ".previous";  // what was there before

// Keeps the regular file that the path leads to under the path with the suffix, in the same folder; one that was kept
// there before is replaced in one step. The second name belongs to the same file, so nothing is copied, and the first
// name leads to it all the time. Where that cannot be done (there is no file; the file system knows no second names;
// the path is a link into another file system) nothing happens.
void setAside(const std::filesystem::path& path, std::string_view suffix);

}  // namespace store
