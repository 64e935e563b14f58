#include "platform/system/SystemNotifyCenter.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDeadlineTimer>

namespace platform {

namespace {

// How long a bus that does not answer may hold up the app. One that works answers within a millisecond.
constexpr int patience = 250;

QString systemBusAddress() {
    const QString address = qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
    return address.isEmpty() ? QStringLiteral("unix:path=/run/dbus/system_bus_socket") : address;
}

// One connection of our own to the bus; gone with this object.
class BusConnection {
public:
    BusConnection() : connection_(QDBusConnection::connectToPeer(systemBusAddress(), name_)) {}
    ~BusConnection() { QDBusConnection::disconnectFromPeer(name_); }
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;

    // The ordinary way to connect says hello by itself and waits for the answer without end; so that is done here.
    bool sayHello() { return connection_.isConnected() && callBus(QStringLiteral("Hello")); }

    void send(const QDBusMessage& message) { connection_.send(message); }

    // The bus answers in order: its answer means that it has what was sent before.
    void flush() { callBus(QStringLiteral("GetId")); }

private:
    bool callBus(const QString& method) {
        const QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                                                 QStringLiteral("/org/freedesktop/DBus"),
                                                                 QStringLiteral("org.freedesktop.DBus"), method);
        const int remaining = static_cast<int>(deadline_.remainingTime());
        return remaining > 0 && connection_.call(call, QDBus::Block, remaining).type() == QDBusMessage::ReplyMessage;
    }

    inline static quint64 count_ = 0;

    QString name_ = QStringLiteral("vexmor-notify-%1").arg(++count_);
    QDeadlineTimer deadline_{patience};
    QDBusConnection connection_;
};

}  // namespace

void SystemNotifyCenter::post(std::string_view name) {
    const auto dot = name.rfind('.');
    const auto text = [](std::string_view part) { return QString::fromUtf8(part.data(), part.size()); };
    const QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/com/urmeld/vxm"), text(name.substr(0, dot)),
                                                           text(name.substr(dot + 1)));
    BusConnection bus;
    if (!bus.sayHello()) return;
    bus.send(signal);
    bus.flush();
}

}  // namespace platform
