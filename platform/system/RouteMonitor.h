#pragma once

#include <functional>
#include <memory>

#include "platform/network/Netlink.h"

class QSocketNotifier;

namespace platform {

// Reports changes of the machine's routes and links, until it is destroyed. Needs an event loop. If rtnetlink cannot be
// monitored, isRunning() is false and `changed` is never called.
class RouteMonitor {
public:
    // `changed` is called once per batch of changes. It must not destroy this object.
    explicit RouteMonitor(std::function<void()> changed);
    ~RouteMonitor();

    bool isRunning() const { return notifier_ != nullptr; }

private:
    void readChanges();

    std::function<void()> changed_;
    NetlinkSocket socket_;
    std::unique_ptr<QSocketNotifier> notifier_;  // destroyed before the socket that it watches
};

}  // namespace platform
