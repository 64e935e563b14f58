#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include "store/files/Buffer.h"

namespace store {

// Reads regular files whole.

// In bytes. Larger files are not read.
inline constexpr std::size_t largestFile = std::size_t{1} << 30;

// A copy of the file's bytes. Nothing when the file does not exist, cannot be read, or is no regular file: opening a
// pipe or a device never blocks.
std::optional<Buffer> readFile(const std::filesystem::path& path);

// The same for short use: a large file is leased, not copied, where the system allows it (see leaseFile()), so release
// the bytes soon. `isWanted` sees the file's first 4 KB; when it returns false, nothing more is read. `failed` is set
// when the system refused to read the file, whose content is then unknown. It is clear when the file does not exist, is
// no regular file, is too large or is not wanted.
std::optional<Buffer> holdFile(const std::filesystem::path& path, bool (*isWanted)(std::string_view beginning),
                               std::error_code& failed);

}  // namespace store
