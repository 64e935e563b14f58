#include "store/SetAside.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "store/Descriptor.h"
#include "store/FileReplacement.h"

namespace store {

void setAside(const std::filesystem::path& path, std::string_view suffix) {
    const Descriptor directory(open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::string name = path.filename();
    const std::string kept = name + std::string(suffix);
    const std::string temporary = temporaryName(kept);
    struct stat status {};
    const int folder = directory.number();
    if (temporary.empty() || fstatat(folder, name.c_str(), &status, 0) != 0 || !S_ISREG(status.st_mode)) return;
    if (linkat(folder, name.c_str(), folder, temporary.c_str(), AT_SYMLINK_FOLLOW) != 0) return;
    renameat(folder, temporary.c_str(), folder, kept.c_str());
    // It is still there when renaming failed, and when the name it was to have belongs to the same file already.
    unlinkat(folder, temporary.c_str(), 0);
}

}  // namespace store
