#pragma once

#include <QString>
#include <memory>

namespace platform {

class BusConnection;

// A desktop notification (Desktop Notifications Specification 1.2, session bus) with the application's name and icon.
// Some desktops withdraw a notification when its sender leaves the bus, so this object must live as long as the message
// should be shown. Main thread.
class DesktopNotification {
public:
    DesktopNotification();
    ~DesktopNotification();

    // `body` is plain text. Does not wait for the bus or the desktop. No effect without a bus or a notification
    // service.
    void post(const QString& summary, const QString& body);

private:
    std::unique_ptr<BusConnection> bus_;  // once something has been posted
};

}  // namespace platform
