#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>

namespace store {

class Sink;

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
std::error_code replaceFile(const std::filesystem::path& path, const std::function<void(Sink&)>& write);

// A name, not to be guessed, for a file on its way to another name in the same folder. Empty when the system gives no
// random numbers.
std::string temporaryName(std::string_view fileName);

// Whether a file is called as one is that is on its way to its place, or was left behind there.
bool isTemporaryName(std::string_view name);

// Removes what replacements that were killed have left in a directory; those still at work are left alone.
void removeStaleTemporaries(const std::filesystem::path& directory);

}  // namespace store
