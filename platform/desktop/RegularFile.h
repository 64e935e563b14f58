#pragma once

#include <sys/types.h>

#include <QByteArray>
#include <cstdint>
#include <filesystem>
#include <optional>

struct stat;

namespace platform {

// Identifies a version of a file or folder without opening it.
struct FileStamp {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    std::int64_t modified = 0;  // nanoseconds
    std::int64_t changed = 0;   // nanoseconds; of the inode, so that it covers mode changes

    FileStamp() = default;
    explicit FileStamp(const struct stat& status);
    bool operator==(const FileStamp&) const = default;
};

// Nothing when there is no such file. Links are followed.
std::optional<FileStamp> stampOf(const std::filesystem::path& path);

bool isRegularFile(const std::filesystem::path& path);

// The content of the file; nothing when it is not a regular file, cannot be read or is longer than `limit` bytes. Never
// blocks on a pipe.
std::optional<QByteArray> readRegularFile(const std::filesystem::path& path, qint64 limit);

// The same for a file that stat() has just reported as regular with `size` bytes; at most `size` bytes are read. Saves
// two of five system calls, for callers that read hundreds of small files.
std::optional<QByteArray> readRegularFileSeen(const std::filesystem::path& path, qint64 size, qint64 limit);

}  // namespace platform
