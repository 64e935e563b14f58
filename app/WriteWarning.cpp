#include "app/WriteWarning.h"

#include <QCoreApplication>
#include <QEvent>
#include <cerrno>
#include <iostream>
#include <utility>

#include "platform/system/Device.h"
#include "platform/system/WriteAccess.h"

namespace app {

namespace {

// One line with the problem and its remedy; empty when access is granted.
QString adviceOn(const platform::WriteAccess& access, const QString& folder) {
    using Kind = platform::WriteAccess::Kind;
    switch (access.kind) {
        case Kind::granted:
            return {};
        case Kind::missing:
            return QStringLiteral("There is no %1. Installing Vexmor again makes it.").arg(folder);
        case Kind::readOnly:
            return QStringLiteral("%1 is on a read-only file system.").arg(folder);
        case Kind::fromNextLogin:
            return QStringLiteral(
                       "Log out and in again: you are in the group %1, which may write to %2, but were not yet when "
                       "this login began.")
                .arg(access.group, folder);
        case Kind::forMembers:
            return QStringLiteral(
                       "You may not write to %1. Ask an administrator to run: adduser %2 %3, then log out "
                       "and in again.")
                .arg(folder, access.user, access.group);
        case Kind::refused:
            break;
    }
    return QStringLiteral("You may not write to %1. Ask an administrator to let you.").arg(folder);
}

}  // namespace

WriteWarning::WriteWarning(std::filesystem::path folder, const platform::Device& device)
    : folder_(std::move(folder)), device_(device) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool WriteWarning::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Paint) {
        QCoreApplication::instance()->removeEventFilter(this);
        // Queued: the frame is shown after the paint event has been processed.
        QMetaObject::invokeMethod(this, &WriteWarning::warn, Qt::QueuedConnection);
    }
    return false;
}

void WriteWarning::warn() const {
    const QString advice = adviceOn(platform::writeAccessTo(folder_), QString::fromLocal8Bit(folder_.string().c_str()));
    if (advice.isEmpty()) return;
    const QString summary = QStringLiteral("Your changes will not be kept");
    std::cerr << program_invocation_short_name << ": " << qUtf8Printable(summary) << ". " << qUtf8Printable(advice)
              << std::endl;
    if (device_.notify) device_.notify(summary, advice);
}

}  // namespace app
