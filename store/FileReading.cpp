#include "store/FileReading.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "store/Descriptor.h"

namespace store {

std::optional<Buffer> readFile(const std::filesystem::path& path) {
    Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    auto size = static_cast<std::size_t>(status.st_size);
    if (size > largestFile) return std::nullopt;
    auto bytes = allocateBytes(size);
    std::size_t done = 0;
    while (done < size) {
        ssize_t count = read(file.number(), bytes.get() + done, size - done);
        if (count < 0 && errno != EINTR) return std::nullopt;
        if (count == 0) break;  // somebody has cut it short in the meantime
        if (count > 0) done += static_cast<std::size_t>(count);
    }
    std::memset(bytes.get() + done, 0, Buffer::padding);
    return Buffer{bytes, done};
}

}  // namespace store
