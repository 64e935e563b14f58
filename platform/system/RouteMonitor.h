#pragma once

#include <functional>
#include <memory>

#include "platform/system/Netlink.h"

class QSocketNotifier;

namespace platform {

// Tells when routes or links of the machine change, until it is destroyed. Needs an event loop; on a machine that
// does not let itself be watched it is not running and never tells.
class RouteMonitor {
public:
    // `changed` is called once for changes that come together; it must not destroy this object.
    explicit RouteMonitor(std::function<void()> changed);
    ~RouteMonitor();

    bool isRunning() const { return notifier_ != nullptr; }

private:
    void readChanges();

    std::function<void()> changed_;
    NetlinkSocket socket_;
    std::unique_ptr<QSocketNotifier> notifier_;  // goes before the socket that it watches
};

}  // namespace platform
