#include "store/files/FileReplacement.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "store/files/Descriptor.h"
#include "store/files/Sink.h"
#include "store/files/Temporaries.h"

namespace store {

namespace {

constexpr int mostLinks = 40;
constexpr mode_t newFileMode = 0644;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

std::error_code error(std::errc code) {
    return std::make_error_code(code);
}

std::filesystem::path folderOf(const std::filesystem::path& path) {
    return path.has_parent_path() ? path.parent_path() : ".";
}

// EINVAL: the file system does not support fsync of a directory.
std::error_code sync(const Descriptor& directory) {
    return fsync(directory.number()) == 0 || errno == EINVAL ? std::error_code() : lastError();
}

// Creates the hard link `name` to a regular file, atomically in place of a file of that name. Returns whether `name`
// refers to the file now: the system refuses links to another user's file that may not be written, and some file
// systems have no hard links.
bool replaceByHardLink(const std::filesystem::path& file, const std::filesystem::path& name) {
    const Descriptor directory(open(folderOf(name).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::string linkName = name.filename();
    const std::string temporary = temporaryName(linkName);
    const int folder = directory.number();
    if (temporary.empty() || linkat(AT_FDCWD, file.c_str(), folder, temporary.c_str(), 0) != 0) return false;
    const bool isLinked = renameat(folder, temporary.c_str(), folder, linkName.c_str()) == 0;
    // It still exists when rename failed, and when `name` was a link to the same file already: rename then does
    // nothing.
    unlinkat(folder, temporary.c_str(), 0);
    return isLinked;
}

class FileSink : public Sink {
public:
    explicit FileSink(int file) : file_(file) {}

    void write(std::string_view bytes) override {
        while (!bytes.empty() && !error_) {
            ssize_t count = ::write(file_, bytes.data(), bytes.size());
            if (count > 0)
                bytes.remove_prefix(static_cast<std::size_t>(count));
            else if (count == 0)
                error_ = store::error(std::errc::io_error);
            else if (errno != EINTR)
                error_ = lastError();
        }
    }

    std::error_code error() const { return error_; }

private:
    int file_;
    std::error_code error_;
};

// One replacement. Removes its temporary file when it fails.
class Replacement {
public:
    explicit Replacement(const std::filesystem::path& target)
        : target_(target),
          name_(target.filename()),
          directory_(open(folderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}

    ~Replacement() {
        if (!temporary_.empty()) unlinkat(directory_.number(), temporary_.c_str(), 0);
    }

    // `keepAs` returns the path under which the replaced file is kept; empty when it is not.
    std::error_code run(const std::function<void(Sink&)>& write, const std::function<std::filesystem::path()>& keepAs) {
        if (!directory_.isOpen()) return lastError();
        if (std::error_code failed = statTarget()) return failed;
        if (std::error_code failed = createTemporary()) return failed;
        FileSink sink(file_.number());
        write(sink);
        if (sink.error()) return sink.error();
        if (std::error_code failed = copyMetadata()) return failed;
        // The file is closed, to see errors of closing, before it is renamed. The duplicate keeps it locked until then:
        // removeStaleTemporaries() removes temporary files without a lock.
        const Descriptor lock(fcntl(file_.number(), F_DUPFD_CLOEXEC, 0));
        if (fsync(file_.number()) != 0 || !file_.close()) return lastError();
        if (std::error_code failed = renameIntoPlace(keepAs())) return failed;
        return sync(directory_);
    }

private:
    std::error_code statTarget() {
        struct stat status {};
        if (fstatat(directory_.number(), name_.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
            if (!S_ISREG(status.st_mode)) return error(std::errc::not_supported);
            replaced_ = status;
            return {};
        }
        return errno == ENOENT ? std::error_code() : lastError();
    }

    // The lock distinguishes a file that is being written from a stale one. Another process may have removed the file
    // as stale between its creation and the lock: then a new one is created.
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

    std::error_code copyMetadata() {
        int file = file_.number();
        if (!replaced_) return fchmod(file, newFileMode) == 0 ? std::error_code() : lastError();
        // Only root may change the owner; others may set a group they belong to. EINVAL: the user namespace does not
        // map the owner or the group.
        if (fchown(file, replaced_->st_uid, replaced_->st_gid) != 0 &&
            fchown(file, uid_t(-1), replaced_->st_gid) != 0 && errno != EPERM && errno != EINVAL)
            return lastError();
        if (fchmod(file, replaced_->st_mode & 07777) != 0) return lastError();
        copyAttributes();
        return {};
    }

    // At every instant the target's name refers to the old file or to the new one.
    std::error_code renameIntoPlace(const std::filesystem::path& keepAs) {
        const bool isToBeKept = !keepAs.empty() && replaced_;
        if (isToBeKept && !replaceByHardLink(target_, keepAs) && exchange()) {
            // The temporary name refers to the old file now. It is removed where it cannot be renamed.
            const bool isKept = renameat(directory_.number(), temporary_.c_str(), AT_FDCWD, keepAs.c_str()) == 0;
            if (isKept) temporary_.clear();
            return {};
        }
        if (renameat(directory_.number(), temporary_.c_str(), directory_.number(), name_.c_str()) != 0)
            return lastError();
        temporary_.clear();
        return {};
    }

    bool exchange() {
        return renameat2(directory_.number(), temporary_.c_str(), directory_.number(), name_.c_str(),
                         RENAME_EXCHANGE) == 0;
    }

    // Attributes that may not be read or set, such as those of the security modules, are skipped.
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

    // The result of a system call that is called first for the size, then for the bytes. Nothing when either fails.
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

std::optional<std::filesystem::path> resolveLinks(std::filesystem::path path) {
    for (int links = 0; links < mostLinks; ++links) {
        std::error_code noLink;
        std::filesystem::path target = std::filesystem::read_symlink(path, noLink);
        if (noLink) return path;
        path = path.parent_path() / target;
    }
    return std::nullopt;
}

std::error_code replaceFile(const std::filesystem::path& path, const std::function<void(Sink&)>& write,
                            const KeptSuffix& keptSuffix) {
    const std::optional<std::filesystem::path> target = resolveLinks(path);
    if (!target) return error(std::errc::too_many_symbolic_link_levels);
    return Replacement(*target).run(write, [&]() -> std::filesystem::path {
        if (!keptSuffix) return {};
        return path.string() + std::string(keptSuffix());
    });
}

std::error_code removeFile(const std::filesystem::path& path) {
    std::error_code failed;
    if (!std::filesystem::remove(path, failed)) return failed;
    const Descriptor directory(open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return directory.isOpen() ? sync(directory) : lastError();
}

}  // namespace store
