#include "platform/desktop/DataDirectories.h"

#include <QByteArray>
#include <QList>
#include <algorithm>
#include <utility>

namespace platform {

namespace fs = std::filesystem;

namespace {

constexpr const char* installed[] = {"usr/local/share", "usr/share"};
constexpr const char* exported[] = {"var/lib/flatpak/exports/share", "var/lib/snapd/desktop"};

fs::path environmentPath(const char* variable, const fs::path& otherwise) {
    const fs::path path = qgetenv(variable).toStdString();
    return path.is_absolute() ? path : otherwise;
}

// Each directory once, where it was added first.
class Directories {
public:
    void add(const fs::path& path) {
        const fs::path plainPath = (path / "").lexically_normal().parent_path();
        if (path.is_absolute() && std::find(list_.begin(), list_.end(), plainPath) == list_.end())
            list_.push_back(plainPath);
    }

    std::vector<fs::path> take() { return std::move(list_); }
    bool holdsOne() const { return list_.size() == 1; }

private:
    std::vector<fs::path> list_;
};

}  // namespace

std::vector<fs::path> dataDirectories(const fs::path& root) {
    if (root != "/") return sharedDataDirectories(root);
    Directories directories;
    const fs::path dataHome = environmentPath("XDG_DATA_HOME", environmentPath("HOME", "/") / ".local/share");
    directories.add(dataHome);
    for (const QByteArray& path : qgetenv("XDG_DATA_DIRS").split(':')) directories.add(path.toStdString());
    if (directories.holdsOne())
        for (const char* path : installed) directories.add(root / path);
    directories.add(dataHome / "flatpak/exports/share");
    for (const char* path : exported) directories.add(root / path);
    return directories.take();
}

std::vector<fs::path> sharedDataDirectories(const fs::path& root) {
    Directories directories;
    for (const char* path : installed) directories.add(fs::absolute(root) / path);
    for (const char* path : exported) directories.add(fs::absolute(root) / path);
    return directories.take();
}

}  // namespace platform
