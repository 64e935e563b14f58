#pragma once

#include <QString>
#include <QStringList>
#include <filesystem>
#include <map>
#include <optional>
#include <vector>

#include "platform/desktop/RegularFile.h"

namespace platform {

class KeyFile;

// Looks up icon files by name: in the given themes and the themes they inherit, then in hicolor, then in the unthemed
// `icons` and `pixmaps` folders. Existing folders are listed once, by the constructor. Immutable: any thread.
class IconTheme {
public:
    IconTheme(std::vector<std::filesystem::path> dataDirectories, const QStringList& themes);

    // The theme set in the desktop's settings below `root`; empty when none is set.
    static QString preferredTheme(const std::filesystem::path& root);

    // The best match for a size in points at a device pixel ratio. `name` may have an image file extension. Empty when
    // there is no such icon.
    std::filesystem::path find(const QString& name, int points, double scale) const;

    // Whether folders of the themes have changed since construction; a new object may then find other files.
    bool hasChangedOnDisk() const;

private:
    // An existing folder of a theme, with the size range in points and the scale of its icons.
    struct Folder {
        std::filesystem::path path;
        int smallest = 0;
        int largest = 0;
        int scale = 1;

        // Distance in pixels from the folder's size range; -1 for an exact match.
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
