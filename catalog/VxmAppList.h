#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace platform {
class ApplicationList;
}

namespace catalog {

// Points; the one icon size used everywhere.
inline constexpr int iconSize = 29;

// The two questions that the screens ask of the installed applications. Identifiers are matched without regard to
// letter case. The answers map identifier (as installed) to display name. Main thread.
namespace VxmAppList {

// The installed applications among `identifiers`. "com.apple.stocks" is an extra alternative that keeps the question
// non-empty: an empty list never asks for everything, and the answer may hold it unasked.
QHash<QString, QString> applicationsWithBundleIdentifiers(platform::ApplicationList& list,
                                                          const QStringList& identifiers);

// Every installed application except `identifiers`; an empty list excludes none.
QHash<QString, QString> applicationsWithoutBundleIdentifiers(platform::ApplicationList& list,
                                                             const QStringList& identifiers);

}  // namespace VxmAppList

}  // namespace catalog
