#pragma once

#include <QString>
#include <memory>

namespace platform {

class BusConnection;

// A message that the desktop shows in its own way (Desktop Notifications Specification 1.2, on the session bus), under
// the application's name and icon. Some desktops take a message back when its sender leaves the bus, so this object
// lives as long as the message should. Main thread.
class DesktopNotification {
public:
    DesktopNotification();
    ~DesktopNotification();

    // `body` is plain text. Returns at once: nobody waits for the bus or the desktop. Without a bus, or where the
    // desktop shows no messages, nothing happens.
    void post(const QString& summary, const QString& body);

private:
    std::unique_ptr<BusConnection> bus_;  // once something has been posted
};

}  // namespace platform
