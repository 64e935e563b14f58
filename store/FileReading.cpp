#include "store/FileReading.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "store/Descriptor.h"

namespace store {

namespace {

constexpr std::size_t beginningSize = 4096;

// How many bytes there are up to `wanted`.
std::size_t readBytes(const Descriptor& file, char* to, std::size_t wanted, std::error_code& failed) {
    std::size_t done = 0;
    while (done < wanted) {
        ssize_t count = read(file.number(), to + done, wanted - done);
        if (count == 0) break;  // somebody has cut it short in the meantime
        if (count > 0)
            done += static_cast<std::size_t>(count);
        else if (errno != EINTR) {
            failed = {errno, std::generic_category()};
            break;
        }
    }
    return done;
}

}  // namespace

std::optional<Buffer> readFile(const std::filesystem::path& path) {
    return readFile(path, [](std::string_view) { return true; });
}

std::optional<Buffer> readFile(const std::filesystem::path& path, bool (*isWanted)(std::string_view beginning)) {
    std::error_code ignored;
    return readFile(path, isWanted, ignored);
}

std::optional<Buffer> readFile(const std::filesystem::path& path, bool (*isWanted)(std::string_view beginning),
                               std::error_code& failed) {
    failed.clear();
    Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0) {
        if (errno != ENOENT) failed = {errno, std::generic_category()};
        return std::nullopt;
    }
    auto size = static_cast<std::size_t>(status.st_size);
    if (!S_ISREG(status.st_mode) || size > largestFile) return std::nullopt;
    auto bytes = allocateBytes(size);
    auto beginning = readBytes(file, bytes.get(), std::min(size, beginningSize), failed);
    if (failed || !isWanted({bytes.get(), beginning})) return std::nullopt;
    auto rest = readBytes(file, bytes.get() + beginning, size - beginning, failed);
    if (failed) return std::nullopt;
    std::size_t done = beginning + rest;
    std::memset(bytes.get() + done, 0, Buffer::padding);
    return Buffer{bytes, done};
}

}  // namespace store
