#include "platform/desktop/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace platform {

namespace {

constexpr std::int64_t nanoseconds(const timespec& time) {
    return time.tv_sec * 1'000'000'000LL + time.tv_nsec;
}

std::optional<QByteArray> readUpTo(int file, qint64 size) {
    QByteArray bytes(size, Qt::Uninitialized);
    qsizetype length = 0;
    while (length < bytes.size()) {
        const ssize_t count = ::read(file, bytes.data() + length, bytes.size() - length);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return {};
        if (count == 0) break;  // the file has been truncated meanwhile
        length += count;
    }
    bytes.truncate(length);
    return bytes;
}

constexpr int openFlags = O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;

}  // namespace

FileStamp::FileStamp(const struct stat& status)
    : device(status.st_dev),
      inode(status.st_ino),
      size(status.st_size),
      modified(nanoseconds(status.st_mtim)),
      changed(nanoseconds(status.st_ctim)) {}

std::optional<FileStamp> stampOf(const std::filesystem::path& path) {
    struct stat status;
    if (::stat(path.c_str(), &status) != 0) return {};
    return FileStamp(status);
}

bool isRegularFile(const std::filesystem::path& path) {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

std::optional<QByteArray> readRegularFile(const std::filesystem::path& path, qint64 limit) {
    if (!isRegularFile(path)) return {};  // opening a device may have side effects
    const int file = ::open(path.c_str(), openFlags);
    if (file < 0) return {};
    std::optional<QByteArray> bytes;
    struct stat status;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size <= limit)
        bytes = readUpTo(file, status.st_size);
    ::close(file);
    return bytes;
}

std::optional<QByteArray> readRegularFileSeen(const std::filesystem::path& path, qint64 size, qint64 limit) {
    if (size > limit) return {};
    const int file = ::open(path.c_str(), openFlags);
    if (file < 0) return {};
    auto bytes = readUpTo(file, size);
    ::close(file);
    return bytes;
}

}  // namespace platform
