#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include "store/files/Buffer.h"

namespace store {

// Larger files are not read.
inline constexpr std::size_t largestFile = std::size_t{1} << 30;

// A file's bytes, read once into memory of their own. Nothing when there is no such file, when it cannot be read, or
// when it is anything but a regular file: a pipe or a device must not make anybody wait.
std::optional<Buffer> readFile(const std::filesystem::path& path);

// The same for a moment, and not always a copy: a large file may be leased (see leaseFile()), so let it go soon. Of a
// file whose beginning (4 KB, or all of it) is not wanted no more than that is read. `failed` is set when the system
// would not let the file be read, so that nothing is known of what it holds. It is clear when there is no such file,
// and when the file is not one to be read.
std::optional<Buffer> holdFile(const std::filesystem::path& path, bool (*isWanted)(std::string_view beginning),
                               std::error_code& failed);

}  // namespace store
