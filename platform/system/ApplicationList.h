#pragma once

#include <QHash>
#include <QImage>
#include <QObject>
#include <QString>
#include <functional>

namespace platform {

// The applications installed on the device: identifier, display name, icon. An abstract class so that a device can
// bring its own catalog; DesktopApplicationList reads the freedesktop one.
class ApplicationList : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // Identifier to display name of every listed application whose identifier satisfies the predicate; an empty
    // predicate takes all. Looks at what is installed now. Main thread.
    virtual QHash<QString, QString> applicationsFilteredUsingPredicate(
        const std::function<bool(const QString& identifier)>& predicate) = 0;

    // Whether iconOfSize() answers at once. Main thread.
    virtual bool hasCachedIconOfSize(int points, const QString& identifier) const = 0;

    // Whether loading this icon was tried and failed. It is not worth asking for again until the catalog changes.
    // Main thread.
    virtual bool iconFailed(int points, const QString& identifier) const = 0;

    // The icon as an image whose device pixel ratio is the screen's; loads it when it is not cached. A null image
    // when there is none. Main thread.
    virtual QImage iconOfSize(int points, const QString& identifier) = 0;

    // Loads the icon into the cache and announces it by iconLoaded(). Any thread. Slow: reads and renders files.
    virtual QImage copyIconOfSize(int points, const QString& identifier) = 0;

Q_SIGNALS:
    // An icon has been loaded and is cached now. Emitted on whatever thread loaded it: connect with a receiver that
    // lives on the main thread, so that it arrives there.
    void iconLoaded(const QString& identifier, int points);
};

}  // namespace platform
