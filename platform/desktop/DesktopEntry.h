#pragma once

#include <QHash>
#include <QString>
#include <filesystem>
#include <memory>
#include <vector>

#include "platform/desktop/RegularFile.h"

namespace platform {

// A parsed desktop file.
struct DesktopEntry {
    std::filesystem::path file;
    FileStamp stamp;      // at the time of reading
    bool listed = false;  // shown to the user; an unlisted entry still hides later entries of its identifier
    QString name;
    QString icon;  // an icon theme name or an absolute path
};

// Desktop file id without ".desktop" to entry.
using DesktopCatalog = QHash<QString, std::shared_ptr<const DesktopEntry>>;

// Reads the `applications` folders of the data directories, in order of precedence. Entries in `known` whose file has
// not changed are reused. Any thread.
DesktopCatalog readDesktopCatalog(const std::vector<std::filesystem::path>& dataDirectories,
                                  const DesktopCatalog& known);

}  // namespace platform
