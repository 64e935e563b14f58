#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "platform/system/ApplicationList.h"

namespace platform {

// Installed applications from the freedesktop catalog: desktop entries (Desktop Entry Specification 1.5) under the
// `applications` folders of the data directories, icons from the icon themes (Icon Theme Specification 0.13), PNG and
// SVG. The identifier is the desktop file id without its ".desktop"; the name is the entry's Name in the language of
// the process's locale. Left out: entries of another type, hidden ones, NoDisplay ones, malformed ones, ones without a
// name, and those whose name or file name is not valid UTF-8. An earlier data directory hides the same identifier in a
// later one.
//
// Every query checks the disk and rereads what has changed since the previous one. It also drops cached icons, loaded
// or failed, whose entry, file or theme has changed.
//
// "com.apple.WebSheet" always has an icon: the generic one.
class DesktopApplicationList : public ApplicationList {
    Q_OBJECT
public:
    // `dataDirectories` in order of precedence (platform::dataDirectories()). Absolute icon paths of entries and the
    // desktop's settings are resolved below `root`.
    explicit DesktopApplicationList(std::vector<std::filesystem::path> dataDirectories,
                                    std::filesystem::path root = "/");
    ~DesktopApplicationList() override;

    // Starts reading the entries on a background thread. The next query takes this result, without a second look at the
    // disk: call it where that query follows within moments, as at start. What changes in between is seen by the query
    // after. Does nothing when no thread can be started. Brings 25 to 29 % of the goal of its row, the first frame,
    // together with the fonts (see Fonts.h); costs a thread, and a first list that may be milliseconds old.
    void readAhead();

    // Sets the device pixel ratio of icons (default 1). Call before the first icon is requested.
    void setScale(double scale);

    QHash<QString, QString> applicationsFilteredUsingPredicate(
        const std::function<bool(const QString& identifier)>& predicate) override;
    bool hasCachedIconOfSize(int points, const QString& identifier) const override;
    bool iconFailed(int points, const QString& identifier) const override;
    QImage iconOfSize(int points, const QString& identifier) override;
    QImage copyIconOfSize(int points, const QString& identifier) override;

private:
    struct Private;
    std::unique_ptr<Private> d_;
};

}  // namespace platform
