#include "store/FileReplacement.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "store/Descriptor.h"
#include "store/Sink.h"

namespace store {

namespace {

// Temporary files are called ".<file>.vxm-<letters>".
constexpr std::string_view temporaryInfix = ".vxm-";
constexpr std::string_view temporaryLetters = "abcdefghijklmnopqrstuvwxyz012345";
constexpr std::size_t temporaryLetterCount = 12;
constexpr std::size_t longestKeptName = 200;
constexpr int mostLinks = 40;
constexpr std::size_t largestWrite = std::size_t{8} << 20;
constexpr mode_t newFileMode = 0644;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

std::error_code error(std::errc code) {
    return std::make_error_code(code);
}

// The file that a path means once symbolic links at its end are followed. Nothing when they go round in circles.
std::optional<std::filesystem::path> resolved(std::filesystem::path path) {
    for (int links = 0; links < mostLinks; ++links) {
        std::error_code noLink;
        std::filesystem::path target = std::filesystem::read_symlink(path, noLink);
        if (noLink) return path;
        path = path.parent_path() / target;
    }
    return std::nullopt;
}

class FileSink : public Sink {
public:
    explicit FileSink(int file) : file_(file) {}

    void write(std::string_view bytes) override {
        while (!bytes.empty() && !error_) {
            ssize_t count = ::write(file_, bytes.data(), std::min(bytes.size(), largestWrite));
            if (count > 0) {
                bytes.remove_prefix(static_cast<std::size_t>(count));
                startWriting(count);
            } else if (count == 0)
                error_ = store::error(std::errc::io_error);
            else if (errno != EINTR)
                error_ = lastError();
        }
    }

    std::error_code error() const { return error_; }

private:
    // Lets the disk begin with what is there, so that it is not all left to the end. A hint; what goes wrong, fsync
    // says.
    void startWriting(off_t count) {
        written_ += count;
        if (written_ - started_ < off_t{largestWrite}) return;
        sync_file_range(file_, started_, written_ - started_, SYNC_FILE_RANGE_WRITE);
        started_ = written_;
    }

    int file_;
    off_t written_ = 0;
    off_t started_ = 0;
    std::error_code error_;
};

// The new content on its way into a directory: a temporary file that is gone again unless it was put in place.
class Replacement {
public:
    explicit Replacement(const std::filesystem::path& target)
        : target_(target),
          name_(target.filename()),
          directory_(open(target.has_parent_path() ? target.parent_path().c_str() : ".",
                          O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}

    ~Replacement() {
        if (!temporary_.empty()) unlinkat(directory_.number(), temporary_.c_str(), 0);
    }

    std::error_code run(const std::function<void(Sink&)>& write) {
        if (!directory_.isOpen()) return lastError();
        if (std::error_code failed = lookAtTarget()) return failed;
        if (std::error_code failed = createTemporary()) return failed;
        FileSink sink(file_.number());
        write(sink);
        if (sink.error()) return sink.error();
        if (std::error_code failed = dressLikeTarget()) return failed;
        if (fsync(file_.number()) != 0 || !file_.close()) return lastError();
        if (renameat(directory_.number(), temporary_.c_str(), directory_.number(), name_.c_str()) != 0)
            return lastError();
        temporary_.clear();
        // Some file systems know no such thing for directories.
        if (fsync(directory_.number()) != 0 && errno != EINVAL) return lastError();
        return {};
    }

private:
    std::error_code lookAtTarget() {
        struct stat status {};
        if (fstatat(directory_.number(), name_.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
            if (!S_ISREG(status.st_mode)) return error(std::errc::not_supported);
            replaced_ = status;
            return {};
        }
        return errno == ENOENT ? std::error_code() : lastError();
    }

    // The lock is what tells a file that is being written from one that was left behind. Between creating and locking
    // it, somebody who sweeps may have taken it for the latter.
    std::error_code createTemporary() {
        for (;;) {
            std::string name = temporaryName(name_);
            if (name.empty()) return lastError();
            Descriptor file(
                openat(directory_.number(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
            if (!file.isOpen() && errno == EEXIST) continue;
            if (!file.isOpen()) return lastError();
            temporary_ = name;
            struct stat status {};
            if (flock(file.number(), LOCK_EX) == 0 && fstat(file.number(), &status) == 0 && status.st_nlink == 0)
                continue;
            file_ = std::move(file);
            return {};
        }
    }

    std::error_code dressLikeTarget() {
        int file = file_.number();
        if (!replaced_) return fchmod(file, newFileMode) == 0 ? std::error_code() : lastError();
        // Only root may give a file away; everybody may at least keep it in a group of theirs.
        if (fchown(file, replaced_->st_uid, replaced_->st_gid) != 0 &&
            fchown(file, uid_t(-1), replaced_->st_gid) != 0 && errno != EPERM)
            return lastError();
        if (fchmod(file, replaced_->st_mode & 07777) != 0) return lastError();
        copyAttributes();
        return {};
    }

    // As far as they may be read and set: some belong to the system.
    void copyAttributes() {
        const std::string names =
            attribute([&](char* to, std::size_t size) { return llistxattr(target_.c_str(), to, size); }).value_or("");
        for (std::size_t at = 0; at < names.size(); at += std::strlen(names.c_str() + at) + 1) {
            const char* name = names.c_str() + at;
            const auto value =
                attribute([&](char* to, std::size_t size) { return lgetxattr(target_.c_str(), name, to, size); });
            if (value) fsetxattr(file_.number(), name, value->data(), value->size(), 0);
        }
    }

    // What is asked for first for its size, then for itself. Nothing when either fails.
    template <class Get>
    static std::optional<std::string> attribute(Get get) {
        const ssize_t size = get(nullptr, 0);
        if (size <= 0) return size == 0 ? std::optional<std::string>("") : std::nullopt;
        std::string value(static_cast<std::size_t>(size), '\0');
        const ssize_t used = get(value.data(), value.size());
        if (used < 0) return std::nullopt;
        value.resize(static_cast<std::size_t>(used));
        return value;
    }

    std::filesystem::path target_;
    std::string name_;
    Descriptor directory_;
    std::optional<struct stat> replaced_;
    std::string temporary_;
    Descriptor file_;
};

}  // namespace

std::error_code replaceFile(const std::filesystem::path& path, const std::function<void(Sink&)>& write) {
    std::optional<std::filesystem::path> target = resolved(path);
    if (!target) return error(std::errc::too_many_symbolic_link_levels);
    return Replacement(*target).run(write);
}

std::string temporaryName(std::string_view fileName) {
    unsigned char random[temporaryLetterCount];
    std::string name = "." + std::string(fileName.substr(0, longestKeptName)) + std::string(temporaryInfix);
    if (getrandom(random, sizeof random, 0) != sizeof random) return {};
    for (unsigned char byte : random) name.push_back(temporaryLetters[byte % temporaryLetters.size()]);
    return name;
}

bool isTemporaryName(std::string_view name) {
    std::size_t ending = temporaryInfix.size() + temporaryLetterCount;
    if (!name.starts_with('.') || name.size() <= ending) return false;
    std::string_view infix = name.substr(name.size() - ending, temporaryInfix.size());
    std::string_view letters = name.substr(name.size() - temporaryLetterCount);
    return infix == temporaryInfix && letters.find_first_not_of(temporaryLetters) == std::string_view::npos;
}

void removeStaleTemporaries(const std::filesystem::path& directory) {
    std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(directory.c_str()), closedir);
    if (!entries) return;
    int number = dirfd(entries.get());
    while (dirent* entry = readdir(entries.get())) {
        if (!isTemporaryName(entry->d_name)) continue;
        Descriptor file(openat(number, entry->d_name, O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
        struct stat status {};
        bool isFile = file.isOpen() && fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode);
        if (isFile && flock(file.number(), LOCK_EX | LOCK_NB) == 0) unlinkat(number, entry->d_name, 0);
    }
}

}  // namespace store
