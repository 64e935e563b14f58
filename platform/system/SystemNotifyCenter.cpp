#include "platform/system/SystemNotifyCenter.h"

#include "platform/system/BusConnection.h"

namespace platform {

namespace {

// Milliseconds that an unresponsive bus may block a post, and the end of the app. A working bus replies within 1 ms.
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

// QtDBus creates its globals on the first lookup of a connection. Done here, so that exit() destroys them after the
// atexit() handlers that post.
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
    // A bus that has stalled is waited for only once.
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
