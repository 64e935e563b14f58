#pragma once

#include <QString>
#include <QStringList>
#include <filesystem>
#include <map>
#include <optional>
#include <vector>

#include "platform/system/RegularFile.h"

namespace platform {

class KeyFile;

// Finds icon files by name: in the given themes and those they inherit, then in hicolor, then beside the themes and in
// `pixmaps`. Which folders exist is looked up once, when the object is made. Immutable: any thread.
class IconTheme {
public:
    IconTheme(std::vector<std::filesystem::path> dataDirectories, const QStringList& themes);

    // The theme that the desktop's settings below `root` name; empty when they name none.
    static QString preferredTheme(const std::filesystem::path& root);

    // The file that fits best for so many points at so many device pixels per point. `name` may carry an image file's
    // extension. Empty when there is no such icon.
    std::filesystem::path find(const QString& name, int points, double scale) const;

    // Whether folders of the themes have changed since this object was made: another one may find other files.
    bool hasChangedOnDisk() const;

private:
    // One folder of a theme that exists, with the points and the scale that its icons are meant for.
    struct Folder {
        std::filesystem::path path;
        int smallest = 0;
        int largest = 0;
        int scale = 1;

        // How badly the folder's icons fit: an exact fit comes before all others.
        double misfit(int points, double screenScale) const;
    };

    void addTheme(const QString& theme, QStringList& visited);
    void addIndexedFolders(const KeyFile& index, const std::vector<std::filesystem::path>& tops);
    void addUsualFolders(const std::vector<std::filesystem::path>& tops);
    void addFolder(const QString& name, Folder folder, const std::vector<std::filesystem::path>& tops);
    void addUnthemedFolders();
    void watch(const std::filesystem::path& path);
    static std::filesystem::path findIn(const std::vector<Folder>& folders, const QString& name, int points,
                                        double scale);

    std::vector<std::filesystem::path> dataDirectories_;
    std::vector<std::vector<Folder>> themes_;  // in order of precedence; the last one is of unthemed icons
    std::map<std::filesystem::path, std::optional<FileStamp>> watched_;
};

}  // namespace platform
