#pragma once

#include <QHash>
#include <QImage>
#include <QObject>
#include <QString>
#include <functional>

namespace platform {

// The installed applications: identifier, display name, icon. Abstract, so that a device can provide its own catalog;
// DesktopApplicationList implements it for the freedesktop catalog.
class ApplicationList : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // Maps identifier to display name for every listed application that satisfies the predicate; an empty predicate
    // selects all. Reflects the current installation. Main thread.
    virtual QHash<QString, QString> applicationsFilteredUsingPredicate(
        const std::function<bool(const QString& identifier)>& predicate) = 0;

    // Whether iconOfSize() returns from the cache. Main thread.
    virtual bool hasCachedIconOfSize(int points, const QString& identifier) const = 0;

    // Whether loading this icon has failed. A retry is useful only after the catalog has changed. Main thread.
    virtual bool iconFailed(int points, const QString& identifier) const = 0;

    // The icon, with the device pixel ratio of the screen; loaded if it is not cached. A null image when there is none.
    // Main thread.
    virtual QImage iconOfSize(int points, const QString& identifier) = 0;

    // Loads the icon into the cache and emits iconLoaded(). Reads and renders files: slow. Any thread.
    virtual QImage copyIconOfSize(int points, const QString& identifier) = 0;

Q_SIGNALS:
    // The icon is now in the cache. Emitted on the thread that loaded it: connect with a receiver on the main thread
    // for queued delivery.
    void iconLoaded(const QString& identifier, int points);
};

}  // namespace platform
