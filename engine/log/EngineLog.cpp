#include "engine/log/EngineLog.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstdio>
#include <string_view>
#include <thread>
#include <utility>

#include "engine/log/LogText.h"
#include "store/files/Descriptor.h"
#include "store/files/Temporaries.h"

namespace engine {

namespace {

static_assert(std::endian::native == std::endian::little);  // as the log is

constexpr char16_t byteOrderMark = 0xFEFF;
constexpr mode_t logMode = 0644;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

struct OpenLog {
    store::Descriptor file;
    struct stat status {};

    std::size_t size() const { return static_cast<std::size_t>(status.st_size); }
};

std::error_code open(const std::filesystem::path& path, OpenLog& log) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::seconds(1);
    do {
        log.file = store::Descriptor(::open(
            path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, logMode));
        if (log.file.isOpen() || errno != EWOULDBLOCK) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));  // leased
    } while (Clock::now() < end);
    if (!log.file.isOpen() || fstat(log.file.number(), &log.status) != 0) return lastError();
    if (!S_ISREG(log.status.st_mode) || log.status.st_nlink > 1) return std::make_error_code(std::errc::not_supported);
    return {};
}

std::error_code write(const store::Descriptor& file, std::u16string_view text) {
    const std::size_t size = text.size() * sizeof(char16_t);
    const ssize_t count = ::write(file.number(), text.data(), size);
    if (count < 0) return lastError();
    return std::cmp_equal(count, size) ? std::error_code() : std::make_error_code(std::errc::no_space_on_device);
}

// The text of the last `largest` bytes, without a byte-order mark.
std::error_code read(const OpenLog& log, std::size_t largest, std::u16string& text) {
    const std::size_t skipped = (log.size() - std::min(log.size(), largest)) / sizeof(char16_t);
    text.resize(log.size() / sizeof(char16_t) - skipped);
    const std::size_t size = text.size() * sizeof(char16_t);
    std::size_t done = 0;
    for (ssize_t count = 1; done < size && count > 0; done += static_cast<std::size_t>(count)) {
        count = pread(log.file.number(), reinterpret_cast<char*>(text.data()) + done, size - done,
                      static_cast<off_t>(skipped * sizeof(char16_t) + done));
        if (count < 0) return lastError();
    }
    text.resize(done / sizeof(char16_t));
    if (text.starts_with(byteOrderMark)) text.erase(0, 1);
    return {};
}

// Not store::replaceFile(), which follows a link that somebody puts in the log's place.
std::error_code replace(const std::filesystem::path& path, const OpenLog& log, std::u16string_view text) {
    store::removeStaleTemporaries(path.parent_path(), path.filename().string());
    const std::filesystem::path temporary = path.parent_path() / store::temporaryName(path.filename().string());
    const store::Descriptor file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file.isOpen()) return lastError();
    // Locked: nobody takes it for the leftover of a process that was killed.
    std::error_code failed;
    if (flock(file.number(), LOCK_EX | LOCK_NB) != 0) failed = lastError();
    if (!failed) failed = write(file, text);
    const bool hasGroup = fchown(file.number(), uid_t(-1), log.status.st_gid) == 0 || errno == EPERM || errno == EINVAL;
    if (!failed && (!hasGroup || fchmod(file.number(), logMode) != 0 || fsync(file.number()) != 0 ||
                    rename(temporary.c_str(), path.c_str()) != 0))
        failed = lastError();
    if (failed) unlink(temporary.c_str());
    return failed;
}

// Half a unit at the end would shift all that follows, half a line would become part of the next one. Of a process that
// was killed either may be there.
std::error_code append(const OpenLog& log, std::u16string text) {
    const auto whole = static_cast<off_t>(log.size() - log.size() % sizeof(char16_t));
    if (log.status.st_size != whole && ftruncate(log.file.number(), whole) != 0) return lastError();
    char16_t last = u'\n';
    if (whole > off_t{sizeof byteOrderMark}) {
        const ssize_t count = pread(log.file.number(), &last, sizeof last, whole - off_t{sizeof last});
        if (count < 0) return lastError();
        if (count != sizeof last) return std::make_error_code(std::errc::io_error);
    }
    if (last != u'\n') text.insert(0, 1, u'\n');
    const std::error_code failed = write(log.file, text);
    if (failed && ftruncate(log.file.number(), whole) != 0) return lastError();
    return failed;
}

}  // namespace

EngineLog::EngineLog(std::filesystem::path file, std::size_t largest) : file_(std::move(file)), largest_(largest) {}

std::error_code EngineLog::append(const std::vector<LogLine>& lines) {
    if (lines.empty()) return {};
    OpenLog log;
    if (const std::error_code failed = open(file_, log)) return failed;
    const bool isFresh = log.size() < sizeof byteOrderMark;
    std::u16string day = isFresh ? u"" : day_;
    std::u16string text = logText(lines, day);
    if (text.size() * sizeof(char16_t) > largest_ / 2) return std::make_error_code(std::errc::file_too_large);
    if (isFresh) {
        text.insert(0, 1, byteOrderMark);
        fchmod(log.file.number(), logMode);  // whatever the umask; where it is another's it has its mode
    }
    std::error_code failed;
    if (log.size() + text.size() * sizeof(char16_t) > largest_) {
        const std::size_t kept = std::min(log.size(), largest_) / 2 / sizeof(char16_t) - 1;
        std::u16string newest;
        failed = read(log, largest_, newest);
        newest = newestLines(newest, kept);
        if (!newest.empty() && newest.back() != u'\n') newest += u'\n';
        if (!failed) failed = replace(file_, log, byteOrderMark + newest + text);
    } else {
        failed = engine::append(log, std::move(text));
    }
    if (!failed) day_ = std::move(day);
    return failed;
}

}  // namespace engine
