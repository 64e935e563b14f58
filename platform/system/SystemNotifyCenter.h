#pragma once

#include <memory>

#include "store/NotifyCenter.h"

namespace platform {

class BusConnection;

// Posts engine notifications as D-Bus signals on the system bus: object path /com/urmeld/vxm, interface com.urmeld.vxm,
// the last component of the notification's name as member, no arguments. Each post opens a new connection, and the bus
// has the signal when post() returns. A stalled bus blocks the app once, for 0.25 s; later posts are queued and sent in
// order when the bus resumes. Without a bus or listeners, posts are dropped immediately. Main thread; also from
// atexit() handlers that were registered after the first instance was created.
class SystemNotifyCenter : public store::NotifyCenter {
public:
    SystemNotifyCenter();
    ~SystemNotifyCenter() override;

    void post(std::string_view name) override;
    // Blocks for 2 s at most.
    void flush() override;

private:
    std::unique_ptr<BusConnection> bus_;  // while the bus has not received everything
    unsigned posts_ = 0;                  // number of posts that were queued
};

}  // namespace platform
