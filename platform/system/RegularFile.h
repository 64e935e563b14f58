#pragma once

#include <sys/types.h>

#include <QByteArray>
#include <cstdint>
#include <filesystem>
#include <optional>

struct stat;

namespace platform {

// What tells one state of a file or folder from another without opening it.
struct FileStamp {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    std::int64_t modified = 0;  // nanoseconds
    std::int64_t changed = 0;   // nanoseconds; the inode's, so that a changed mode counts too

    FileStamp() = default;
    explicit FileStamp(const struct stat& status);
    bool operator==(const FileStamp&) const = default;
};

// Nothing when there is no such file. Links are followed.
std::optional<FileStamp> stampOf(const std::filesystem::path& path);

bool isRegularFile(const std::filesystem::path& path);

// The whole file, or nothing when it is not a regular file (a pipe is never waited for), cannot be read or is longer
// than `limit` bytes.
std::optional<QByteArray> readRegularFile(const std::filesystem::path& path, qint64 limit);

// The same for a file that has just been seen to be a regular one of `size` bytes. What it has grown by since is left
// out. Spares two of five system calls, which counts where hundreds of small files are read.
std::optional<QByteArray> readRegularFileSeen(const std::filesystem::path& path, qint64 size, qint64 limit);

}  // namespace platform
