#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <functional>

namespace platform {

// A private connection to a message bus, closed by the destructor. QDBusConnection::connectToBus() sends "Hello" and
// waits for the reply without a timeout; here the caller sends it as the first message and does not wait. Main thread.
class BusConnection {
public:
    // `address` is a D-Bus address ("unix:path=..."). Without a listener, messages are dropped.
    explicit BusConnection(const QString& address);
    ~BusConnection();
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;

    bool isConnected() const { return connection_.isConnected(); }

    // Does not block. If the bus has stalled, QtDBus writes the rest from its own thread while this object exists.
    void send(const QDBusMessage& message);

    // Calls `taken` from the event loop once the bus has received everything sent so far, or has closed the connection;
    // not after this object's destruction. The bus processes messages in order, so the reply to one more call proves
    // that it has the earlier ones.
    void whenTaken(std::function<void()> taken);

    // Blocks until the bus has received everything, at most `patience` milliseconds. Returns false on timeout.
    bool waitUntilTaken(int patience);

    // A call to the bus itself ("Hello").
    static QDBusMessage callToBus(const QString& method);

private:
    QString name_;
    QObject questions_;  // parent of the pending calls
    QDBusConnection connection_;
};

}  // namespace platform
