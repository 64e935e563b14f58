#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace platform {
class ApplicationList;
}

namespace catalog {

// The size of all icons, in points.
inline constexpr int iconSize = 29;

// The screens' two queries of the installed applications. Identifiers are compared case-insensitively. The results map
// identifier (as installed) to display name. Main thread.
namespace VxmAppList {

// The installed applications among `identifiers`. "com.apple.stocks" is always added, so that an empty list does not
// select everything; the result may therefore contain it unrequested.
QHash<QString, QString> applicationsWithBundleIdentifiers(platform::ApplicationList& list,
                                                          const QStringList& identifiers);

// All installed applications except `identifiers`.
QHash<QString, QString> applicationsWithoutBundleIdentifiers(platform::ApplicationList& list,
                                                             const QStringList& identifiers);

}  // namespace VxmAppList

}  // namespace catalog
