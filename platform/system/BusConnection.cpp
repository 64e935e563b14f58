#include "platform/system/BusConnection.h"

#include <QDBusPendingCallWatcher>
#include <limits>
#include <utility>

namespace platform {

namespace {

QString nextName() {
    static quint64 count = 0;
    return QStringLiteral("vexmor-%1").arg(++count);
}

QDBusMessage lastQuestion() {
    return BusConnection::callToBus(QStringLiteral("GetId"));
}

constexpr int withoutEnd = std::numeric_limits<int>::max();

}  // namespace

BusConnection::BusConnection(const QString& address)
    : name_(nextName()), connection_(QDBusConnection::connectToPeer(address, name_)) {}

BusConnection::~BusConnection() {
    QDBusConnection::disconnectFromPeer(name_);
}

void BusConnection::send(const QDBusMessage& message) {
    connection_.send(message);
}

void BusConnection::whenTaken(std::function<void()> taken) {
    auto* question = new QDBusPendingCallWatcher(connection_.asyncCall(lastQuestion(), withoutEnd), &questions_);
    QObject::connect(question, &QDBusPendingCallWatcher::finished, &questions_, std::move(taken), Qt::QueuedConnection);
}

bool BusConnection::waitUntilTaken(int patience) {
    return connection_.call(lastQuestion(), QDBus::Block, patience).type() == QDBusMessage::ReplyMessage;
}

QDBusMessage BusConnection::callToBus(const QString& method) {
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    return QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus, method);
}

}  // namespace platform
