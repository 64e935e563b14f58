#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <system_error>

namespace store {

class Sink;

// Replaces and removes files atomically and durably.

// Returns the suffix under which the replaced file is kept; empty when it is not kept. Called when the new file is
// complete.
using KeptSuffix = std::function<std::string_view()>;

// Replaces or creates a file atomically: a process that opens it, at any time and after any crash, finds the whole old
// content or the whole new content. `write` writes to a temporary file in the same directory, which is flushed to disk
// (fsync) and renamed over the old file.
//
// Owner, mode and extended attributes are copied from the replaced file, as far as the process may set them; a new file
// has mode 0644 whatever the umask. Symbolic links are followed, not replaced. A target that is no regular file, or
// whose directory does not exist, is an error.
//
// On an error the old file is unchanged and no temporary file remains. Only when the last step fails, the fsync of the
// directory, the new file is in place but may not survive a power cut.
//
// With a suffix, the replaced file is kept under `path` and the suffix (beside the symbolic link where the path is
// one), in place of a file kept there before. It is a hard link to the old file, so that nothing is copied. Where the
// system refuses the link, as it does for another user's file, both files are exchanged (RENAME_EXCHANGE) and the old
// one is renamed; a process killed between these two steps keeps nothing. Nothing is kept where neither is possible:
// there is no old file, or the path is a link into another file system.
std::error_code replaceFile(const std::filesystem::path& path, const std::function<void(Sink&)>& write,
                            const KeptSuffix& keptSuffix = {});

// Removes a file or a symbolic link durably. A file that does not exist is no error.
std::error_code removeFile(const std::filesystem::path& path);

// The path with symbolic links in its last component resolved, whether or not the target exists. Nothing when they form
// a cycle.
std::optional<std::filesystem::path> resolveLinks(std::filesystem::path path);

}  // namespace store
