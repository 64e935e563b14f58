#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <functional>

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

    // Nobody waits for what becomes of it. What a bus that has stalled does not take now goes on from a thread of its
    // own, for as long as this object lives.
    void send(const QDBusMessage& message);

    // Calls `taken` from the event loop once the bus has taken all that was sent so far, or is gone; not after this
    // object's end. It answers in order: its answer to one more question means that it has what came before.
    void whenTaken(std::function<void()> taken);

    // Waits for that, so many milliseconds at most. Returns whether the bus has it all.
    bool waitUntilTaken(int patience);

    // A call to the bus itself ("Hello").
    static QDBusMessage callToBus(const QString& method);

private:
    QString name_;
    QObject questions_;  // whose children are those that the bus has not answered
    QDBusConnection connection_;
};

}  // namespace platform
