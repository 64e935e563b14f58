#include "store/files/SecondName.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "store/files/Descriptor.h"
#include "store/files/Temporaries.h"

namespace store {

bool giveSecondName(const std::filesystem::path& file, const std::filesystem::path& name) {
    const Descriptor directory(open(name.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::string second = name.filename();
    const std::string temporary = temporaryName(second);
    const int folder = directory.number();
    if (temporary.empty() || linkat(AT_FDCWD, file.c_str(), folder, temporary.c_str(), 0) != 0) return false;
    const bool isGiven = renameat(folder, temporary.c_str(), folder, second.c_str()) == 0;
    // It is still there when renaming failed, and when the name it was to have belongs to the same file already.
    unlinkat(folder, temporary.c_str(), 0);
    return isGiven;
}

}  // namespace store
