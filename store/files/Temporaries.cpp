#include "store/files/Temporaries.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <memory>

#include "store/files/Descriptor.h"

namespace store {

namespace {

constexpr std::string_view infix = ".vxm-";
constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz012345";
constexpr std::size_t letterCount = 12;
constexpr std::size_t ending = infix.size() + letterCount;
constexpr std::size_t longestKeptName = 200;

// The common prefix of all temporary names of a file.
std::string beginningFor(std::string_view fileName) {
    return "." + std::string(fileName.substr(0, longestKeptName)) + std::string(infix);
}

bool isFor(std::string_view fileName, std::string_view temporary) {
    return fileName.empty() || temporary.substr(0, temporary.size() - letterCount) == beginningFor(fileName);
}

}  // namespace

std::string temporaryName(std::string_view fileName) {
    unsigned char random[letterCount];
    if (getrandom(random, sizeof random, 0) != sizeof random) return {};
    std::string name = beginningFor(fileName);
    for (unsigned char byte : random) name.push_back(letters[byte % letters.size()]);
    return name;
}

bool isTemporaryName(std::string_view name) {
    if (!name.starts_with('.') || name.size() <= ending) return false;
    return name.substr(name.size() - ending, infix.size()) == infix &&
           name.substr(name.size() - letterCount).find_first_not_of(letters) == std::string_view::npos;
}

void removeStaleTemporaries(const std::filesystem::path& directory, std::string_view fileName) {
    std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(directory.c_str()), closedir);
    if (!entries) return;
    int number = dirfd(entries.get());
    while (dirent* entry = readdir(entries.get())) {
        if (!isTemporaryName(entry->d_name) || !isFor(fileName, entry->d_name)) continue;
        Descriptor file(openat(number, entry->d_name, O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
        struct stat status {};
        bool isFile = file.isOpen() && fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode);
        if (isFile && flock(file.number(), LOCK_EX | LOCK_NB) == 0) unlinkat(number, entry->d_name, 0);
    }
}

}  // namespace store
