#include "store/FileReading.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>

#include "store/Descriptor.h"
#include "store/Parts.h"

namespace store {

namespace {

constexpr std::size_t beginningSize = 4096;
// So many bytes take longer to copy, into memory that was never touched, than a thread takes to begin.
constexpr std::size_t worthwhile = std::size_t{4} << 20;

// Where the file ends, at `end` at the latest.
std::size_t readBytes(const Descriptor& file, char* bytes, std::size_t begin, std::size_t end,
                      std::error_code& failed) {
    while (begin < end) {
        const ssize_t count = pread(file.number(), bytes + begin, end - begin, static_cast<off_t>(begin));
        if (count == 0) break;  // somebody has cut it short in the meantime
        if (count > 0)
            begin += static_cast<std::size_t>(count);
        else if (errno != EINTR) {
            failed = {errno, std::generic_category()};
            break;
        }
    }
    return begin;
}

std::size_t readInParts(const Descriptor& file, char* bytes, std::size_t begin, std::size_t end,
                        std::error_code& failed) {
    std::mutex lock;  // guards the two results
    std::size_t fileEnd = end;
    inParts(end - begin, worthwhile, [&](std::size_t partBegin, std::size_t partEnd) {
        std::error_code partFailed;
        const std::size_t done = readBytes(file, bytes, begin + partBegin, begin + partEnd, partFailed);
        const std::lock_guard guard(lock);
        if (done < begin + partEnd) fileEnd = std::min(fileEnd, done);
        if (partFailed) failed = partFailed;
    });
    return fileEnd;
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
    std::size_t done = readBytes(file, bytes.get(), 0, std::min(size, beginningSize), failed);
    if (failed || !isWanted({bytes.get(), done})) return std::nullopt;
    if (done == beginningSize) done = readInParts(file, bytes.get(), done, size, failed);
    if (failed) return std::nullopt;
    std::memset(bytes.get() + done, 0, Buffer::padding);
    return Buffer{bytes, done};
}

}  // namespace store
