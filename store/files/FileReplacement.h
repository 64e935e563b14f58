#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <system_error>

namespace store {

class Sink;

// The suffix under which a file that is replaced is kept; asked once the new file is complete. Empty: it is not kept.
using KeptSuffix = std::function<std::string_view()>;

// Replaces a file in one step, or creates it: whoever opens it, at any time and after any crash, finds the old content
// whole or the new content whole. The new file lies beside the old one until it is complete and on the disk.
//
// Owner, mode and extended attributes stay those of the file that is replaced, as far as the process may set them; a
// new file has mode 0644 whatever the umask. A symbolic link is followed, not replaced: what it leads to, by as many
// links as it takes, is replaced in the folder where that lies, or created there. Anything but a regular file is left
// alone, and so is a directory that does not exist.
//
// On an error the old file is untouched and nothing is left beside it. (Only an error of the very last step, when the
// directory cannot be brought to the disk, means that the new file is there but might not outlive a power cut.)
//
// With a suffix, the file that is replaced is kept under the path with the suffix, beside the link where the path is
// one; one that was kept there before is replaced in one step. Where the system allows it the old file gets that as its
// second name, so that nothing is copied; where it refuses, as it does with another person's file, the two files change
// places first, and a process that is killed just then has kept nothing. Where neither can be done (there is no file;
// the path is a link into another file system) nothing is kept.
std::error_code replaceFile(const std::filesystem::path& path, const std::function<void(Sink&)>& write,
                            const KeptSuffix& keptSuffix = {});

// Removes a file, or a link; after a power cut it stays removed. There being none is no error.
std::error_code removeFile(const std::filesystem::path& path);

// The file that a path means once symbolic links at its end are followed. Nothing when they go round in circles.
std::optional<std::filesystem::path> withoutLinks(std::filesystem::path path);

}  // namespace store
