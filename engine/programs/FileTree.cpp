#include "engine/programs/FileTree.h"

#include <sys/stat.h>

#include <deque>
#include <system_error>

#include "platform/desktop/RegularFile.h"

namespace engine {

namespace fs = std::filesystem;

namespace {

constexpr int mostLinks = 40;
constexpr std::string_view searched[] = {"/usr/local/bin",   "/usr/bin",        "/bin",      "/usr/games",
                                         "/usr/local/games", "/usr/local/sbin", "/usr/sbin", "/sbin"};

// realpath() for a file system that begins at `root`.
std::optional<fs::path> withoutLinks(const fs::path& root, const fs::path& path) {
    std::deque<fs::path> ahead(path.begin(), path.end());
    fs::path done = "/";
    for (int links = 0; !ahead.empty();) {
        const fs::path part = std::move(ahead.front());
        ahead.pop_front();
        if (part == "/")
            done = "/";
        else if (part == "..")
            done = done.parent_path();
        if (part.empty() || part == "." || part == "/" || part == "..") continue;
        std::error_code error;
        const fs::path place = root / (done / part).relative_path();
        const fs::file_status status = fs::symlink_status(place, error);
        if (!fs::exists(status)) return {};
        if (!fs::is_symlink(status)) {
            done /= part;
            continue;
        }
        if (++links > mostLinks) return {};
        const fs::path target = fs::read_symlink(place, error);
        if (error) return {};
        ahead.insert(ahead.begin(), target.begin(), target.end());
    }
    return done;
}

std::optional<FileTree::File> fileBelow(const fs::path& root, const fs::path& path) {
    const auto plain = withoutLinks(root, path);
    if (!plain) return {};
    FileTree::File file{plain->string(), root / plain->relative_path()};
    if (!platform::isRegularFile(file.place)) return {};
    return file;
}

bool isExecutable(const FileTree::File& file) {
    struct stat status;
    return ::stat(file.place.c_str(), &status) == 0 && (status.st_mode & (S_IXUSR | S_IXGRP | S_IXOTH)) != 0;
}

}  // namespace

FileTree::FileTree(const fs::path& root) : root_(fs::absolute(root).lexically_normal()) {}

std::vector<fs::path> FileTree::roots() const {
    if (root_ == "/") return {root_};
    return {root_, "/"};
}

std::optional<FileTree::File> FileTree::file(std::string_view path) const {
    if (!path.starts_with('/')) return {};
    for (const fs::path& root : roots())
        if (auto file = fileBelow(root, path)) return file;
    return {};
}

std::optional<FileTree::Executable> FileTree::executable(std::string_view name) const {
    if (name.find('/') != name.npos) {
        auto found = file(name);
        if (!found || !isExecutable(*found)) return {};
        return Executable{std::string(name), *std::move(found)};
    }
    for (const fs::path& root : roots()) {
        for (const std::string_view folder : searched) {
            const std::string path = std::string(folder) + '/' + std::string(name);
            auto found = fileBelow(root, path);
            if (found && isExecutable(*found)) return Executable{path, *std::move(found)};
        }
    }
    return {};
}

}  // namespace engine
