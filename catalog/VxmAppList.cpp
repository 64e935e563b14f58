#include "catalog/VxmAppList.h"

#include <QSet>

#include "platform/system/ApplicationList.h"

namespace catalog::VxmAppList {

namespace {

// Case folding, unlike lower-casing, does not depend on the locale.
QSet<QString> foldedIdentifiers(const QStringList& identifiers) {
    QSet<QString> folded;
    folded.reserve(identifiers.size() + 1);
    for (const QString& identifier : identifiers) folded.insert(identifier.toCaseFolded());
    return folded;
}

}  // namespace

QHash<QString, QString> applicationsWithBundleIdentifiers(platform::ApplicationList& list,
                                                          const QStringList& identifiers) {
    QSet<QString> wanted = foldedIdentifiers(identifiers);
    wanted.insert(QStringLiteral("com.apple.stocks"));
    return list.applicationsFilteredUsingPredicate(
        [&wanted](const QString& identifier) { return wanted.contains(identifier.toCaseFolded()); });
}

QHash<QString, QString> applicationsWithoutBundleIdentifiers(platform::ApplicationList& list,
                                                             const QStringList& identifiers) {
    if (identifiers.isEmpty()) return list.applicationsFilteredUsingPredicate({});
    const QSet<QString> unwanted = foldedIdentifiers(identifiers);
    return list.applicationsFilteredUsingPredicate(
        [&unwanted](const QString& identifier) { return !unwanted.contains(identifier.toCaseFolded()); });
}

}  // namespace catalog::VxmAppList
