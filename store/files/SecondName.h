#pragma once

#include <filesystem>
#include <string_view>

namespace store {

// A file that is replaced whole, by something that was not made from it, is kept under its own name with one of these
// behind it.
inline constexpr std::string_view damagedSuffix = ".damaged";    // what was no dictionary, or could not be read
inline constexpr std::string_view previousSuffix = ".previous";  // what was there before

// Gives a regular file a second name, in the same file system, in place of whatever file has it. The first name leads
// to the file all the time. Returns whether it has the second name now: the system refuses one for another person's
// file that may not be written, and some file systems know no second names.
bool giveSecondName(const std::filesystem::path& file, const std::filesystem::path& name);

}  // namespace store
