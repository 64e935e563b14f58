#pragma once

#include <memory>

#include "store/NotifyCenter.h"

namespace platform {

class BusConnection;

// Posts engine notifications as D-Bus signals on the system bus: object path /com/urmeld/vxm, interface
// com.urmeld.vxm, the notification's last part as member, no arguments; interface and member together spell the
// notification's name. The bus is found anew for each post, and has the post when post() returns. One that has stalled
// holds up the app for a quarter of a second, once: what is posted then is sent in its order when the bus goes on. No
// bus, a bus that went away, nobody listening: nothing happens, at once. Main thread; also from handlers of exit() that
// were registered later than the first of these objects was made.
class SystemNotifyCenter : public store::NotifyCenter {
public:
    SystemNotifyCenter();
    ~SystemNotifyCenter() override;

    void post(std::string_view name) override;
    // Waits two seconds at most.
    void flush() override;

private:
    std::unique_ptr<BusConnection> bus_;  // while it has not taken everything
    unsigned posts_ = 0;                  // that it did not take at once
};

}  // namespace platform
