#include "platform/system/SystemNotifyCenter.h"

#include "platform/system/BusConnection.h"

namespace platform {

namespace {

// How many milliseconds a bus that does not answer may hold up the app, and how many its end. One that works answers
// within one.
constexpr int patience = 250;
constexpr int lastPatience = 2000;

QString systemBusAddress() {
    const QString address = qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
    return address.isEmpty() ? QStringLiteral("unix:path=/run/dbus/system_bus_socket") : address;
}

QDBusMessage signalOf(std::string_view name) {
    const auto dot = name.rfind('.');
    const auto text = [](std::string_view part) { return QString::fromUtf8(part.data(), part.size()); };
    return QDBusMessage::createSignal(QStringLiteral("/com/urmeld/vxm"), text(name.substr(0, dot)),
                                      text(name.substr(dot + 1)));
}

}  // namespace

// Qt's part of D-Bus begins when it is first asked for a connection, here for one that there is not: so it ends later
// in exit() than who posts from there.
SystemNotifyCenter::SystemNotifyCenter() {
    const QDBusConnection none(QStringLiteral("none"));
}

SystemNotifyCenter::~SystemNotifyCenter() = default;

void SystemNotifyCenter::post(std::string_view name) {
    const bool hasStalled = bus_ && bus_->isConnected();
    if (!hasStalled) {
        bus_ = std::make_unique<BusConnection>(systemBusAddress());
        bus_->send(BusConnection::callToBus(QStringLiteral("Hello")));
    }
    bus_->send(signalOf(name));
    // Who has waited for this bus once does not wait again.
    if (!bus_->isConnected() || (!hasStalled && bus_->waitUntilTaken(patience))) return bus_.reset();
    bus_->whenTaken([this, posts = ++posts_] {
        if (posts == posts_) bus_.reset();
    });
}

void SystemNotifyCenter::flush() {
    if (bus_ && bus_->isConnected()) bus_->waitUntilTaken(lastPatience);
    bus_.reset();
}

}  // namespace platform
