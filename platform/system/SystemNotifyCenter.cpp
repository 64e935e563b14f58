#include "platform/system/SystemNotifyCenter.h"

#include <QDeadlineTimer>

#include "platform/system/BusConnection.h"

namespace platform {

namespace {

// How long a bus that does not answer may hold up the app. One that works answers within a millisecond.
constexpr int patience = 250;

QString systemBusAddress() {
    const QString address = qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
    return address.isEmpty() ? QStringLiteral("unix:path=/run/dbus/system_bus_socket") : address;
}

}  // namespace

void SystemNotifyCenter::post(std::string_view name) {
    const auto dot = name.rfind('.');
    const auto text = [](std::string_view part) { return QString::fromUtf8(part.data(), part.size()); };
    const QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/com/urmeld/vxm"), text(name.substr(0, dot)),
                                                           text(name.substr(dot + 1)));
    const QDeadlineTimer deadline(patience);
    BusConnection bus(systemBusAddress());
    const auto ask = [&](const QString& method) {
        const int remaining = static_cast<int>(deadline.remainingTime());
        return remaining > 0 && bus.call(BusConnection::callToBus(method), remaining);
    };
    if (!bus.isConnected() || !ask(QStringLiteral("Hello"))) return;
    bus.send(signal);
    ask(QStringLiteral("GetId"));  // the bus answers in order: its answer means that it has what was sent before
}

}  // namespace platform
