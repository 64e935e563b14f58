#pragma once

#include <QHash>
#include <QString>
#include <filesystem>
#include <memory>
#include <vector>

#include "platform/system/RegularFile.h"

namespace platform {

// One desktop file, read once.
struct DesktopEntry {
    std::filesystem::path file;
    FileStamp stamp;      // the file as it was when it was read
    bool listed = false;  // an application to show; an unlisted entry still hides later ones of its identifier
    QString name;
    QString icon;  // a themed icon's name or an absolute path, as the entry has it
};

// Desktop file id without ".desktop" to entry.
using DesktopCatalog = QHash<QString, std::shared_ptr<const DesktopEntry>>;

// Reads the `applications` folders of the data directories, earlier ones first. An entry that is in `known` and whose
// file has not changed since is taken over, not read again. Any thread.
DesktopCatalog readDesktopCatalog(const std::vector<std::filesystem::path>& dataDirectories,
                                  const DesktopCatalog& known);

}  // namespace platform
