#include "store/files/FileReading.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <utility>

#include "store/files/Descriptor.h"
#include "store/files/FileLease.h"
#include "store/parallel/Parts.h"

namespace store {

namespace {

constexpr std::size_t beginningSize = 4096;
// Bytes for each thread: copying fewer, page faults of new memory included, takes less time than starting a thread.
constexpr std::size_t worthwhile = std::size_t{4} << 20;
// Below this size a lease, which can make writers wait, saves too little.
constexpr std::size_t worthLeasing = std::size_t{1} << 20;

// Reads the bytes from `begin` to `end`. Returns where reading stopped: at `end`, or at the end of the file.
std::size_t readBytes(const Descriptor& file, char* bytes, std::size_t begin, std::size_t end,
                      std::error_code& failed) {
    while (begin < end) {
        const ssize_t count = pread(file.number(), bytes + begin, end - begin, static_cast<off_t>(begin));
        if (count == 0) break;  // truncated since it was opened
        if (count > 0)
            begin += static_cast<std::size_t>(count);
        else if (errno != EINTR) {
            failed = {errno, std::generic_category()};
            break;
        }
    }
    return begin;
}

std::size_t readInParts(const Descriptor& file, char* bytes, std::size_t size, std::error_code& failed) {
    std::mutex lock;  // guards the two results
    std::size_t fileEnd = size;
    inParts(size, worthwhile, [&](std::size_t begin, std::size_t end) {
        std::error_code partFailed;
        const std::size_t done = readBytes(file, bytes, begin, end, partFailed);
        const std::lock_guard guard(lock);
        if (done < end) fileEnd = std::min(fileEnd, done);
        if (partFailed) failed = partFailed;
    });
    return fileEnd;
}

struct OpenFile {
    Descriptor descriptor;
    std::size_t size;
};

// Nothing when the file does not exist, is no regular file or is too large; see holdFile() for `failed`.
std::optional<OpenFile> openFile(const std::filesystem::path& path, std::error_code& failed) {
    Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0) {
        if (errno != ENOENT) failed = {errno, std::generic_category()};
        return std::nullopt;
    }
    auto size = static_cast<std::size_t>(status.st_size);
    if (!S_ISREG(status.st_mode) || size > largestFile) return std::nullopt;
    return OpenFile{std::move(file), size};
}

std::optional<Buffer> copyFile(const OpenFile& file, std::error_code& failed) {
    auto bytes = allocateBytes(file.size);
    const std::size_t done = readInParts(file.descriptor, bytes.get(), file.size, failed);
    if (failed) return std::nullopt;
    std::memset(bytes.get() + done, 0, Buffer::padding);
    return Buffer{bytes, done};
}

}  // namespace

std::optional<Buffer> readFile(const std::filesystem::path& path) {
    std::error_code failed;
    const std::optional<OpenFile> file = openFile(path, failed);
    return file ? copyFile(*file, failed) : std::nullopt;
}

std::optional<Buffer> holdFile(const std::filesystem::path& path, bool (*isWanted)(std::string_view beginning),
                               std::error_code& failed) {
    failed.clear();
    std::optional<OpenFile> file = openFile(path, failed);
    if (!file) return std::nullopt;
    std::array<char, beginningSize> beginning;
    const std::size_t looked =
        readBytes(file->descriptor, beginning.data(), 0, std::min(file->size, beginningSize), failed);
    if (failed || !isWanted({beginning.data(), looked})) return std::nullopt;
    if (file->size >= worthLeasing) {
        if (std::optional<Buffer> leased = leaseFile(file->descriptor, file->size)) return leased;
    }
    return copyFile(*file, failed);
}

}  // namespace store
