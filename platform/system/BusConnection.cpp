#include "platform/system/BusConnection.h"

namespace platform {

namespace {

QString nextName() {
    static quint64 count = 0;
    return QStringLiteral("vexmor-%1").arg(++count);
}

}  // namespace

BusConnection::BusConnection(const QString& address)
    : name_(nextName()), connection_(QDBusConnection::connectToPeer(address, name_)) {}

BusConnection::~BusConnection() {
    QDBusConnection::disconnectFromPeer(name_);
}

bool BusConnection::call(const QDBusMessage& message, int patience) {
    return connection_.call(message, QDBus::Block, patience).type() == QDBusMessage::ReplyMessage;
}

void BusConnection::send(const QDBusMessage& message) {
    connection_.send(message);
}

QDBusMessage BusConnection::callToBus(const QString& method) {
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    return QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus, method);
}

}  // namespace platform
