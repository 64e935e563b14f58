#include "platform/system/DesktopNotification.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QStringList>
#include <QVariantMap>

#include "platform/system/BusConnection.h"

namespace platform {

namespace {

QString sessionBusAddress() {
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    return address.isEmpty() ? QStringLiteral("unix:path=%1/bus").arg(qEnvironmentVariable("XDG_RUNTIME_DIR"))
                             : address;
}

QDBusMessage notify(const QString& summary, const QString& body) {
    const QString desktopFile = QGuiApplication::desktopFileName();
    const QString service = QStringLiteral("org.freedesktop.Notifications");
    QDBusMessage call = QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/Notifications"),
                                                       service, QStringLiteral("Notify"));
    const uint replacesNone = 0;
    const int expiresAsUsual = -1;
    call << QCoreApplication::applicationName() << replacesNone << desktopFile << summary
         << body.toHtmlEscaped()  // a body is markup
         << QStringList() << QVariantMap{{QStringLiteral("desktop-entry"), desktopFile}} << expiresAsUsual;
    return call;
}

}  // namespace

DesktopNotification::DesktopNotification() = default;

DesktopNotification::~DesktopNotification() = default;

void DesktopNotification::post(const QString& summary, const QString& body) {
    if (!bus_) {
        bus_ = std::make_unique<BusConnection>(sessionBusAddress());
        bus_->send(BusConnection::callToBus(QStringLiteral("Hello")));
    }
    bus_->send(notify(summary, body));
}

}  // namespace platform
