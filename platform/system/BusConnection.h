#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>

namespace platform {

// One connection of our own to a message bus; gone with this object. The ordinary way to connect says hello by itself
// and waits for the answer without end; here the caller says it, before anything else. Main thread.
class BusConnection {
public:
    // In the notation of D-Bus ("unix:path=..."). Where nobody listens, nothing that is sent arrives.
    explicit BusConnection(const QString& address);
    ~BusConnection();
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;

    bool isConnected() const { return connection_.isConnected(); }

    // Waits for the answer so many milliseconds at most. Returns whether it came.
    bool call(const QDBusMessage& message, int patience);

    // Nobody waits for what becomes of it.
    void send(const QDBusMessage& message);

    // A call to the bus itself ("Hello").
    static QDBusMessage callToBus(const QString& method);

private:
    QString name_;
    QDBusConnection connection_;
};

}  // namespace platform
