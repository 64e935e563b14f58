#pragma once

#include <memory>

#include "platform/system/Network.h"

namespace platform {

class RouteMonitor;
class Mailbox;

// The network of the machine, as the kernel's routing tables have it: a route means reachable, a route without a
// gateway direct, a cellular device the cellular network. A route over a link that is down leads nowhere. The internet
// in general is a default route, IPv4 or else IPv6; where there are several, the preferred one.
class HostNetwork : public Network {
    Q_OBJECT
public:
    explicit HostNetwork(QObject* parent = nullptr);
    ~HostNetwork() override;

    std::optional<std::uint32_t> flagsForAddress(const HostAddress& address) override;
    void resolveHostName(const QString& name, QObject& receiver, Resolved resolved) override;
    bool isWatched() const override;

protected:
    void connectNotify(const QMetaMethod& signal) override;

private:
    std::unique_ptr<RouteMonitor> monitor_;  // once somebody has connected to changed()
    std::shared_ptr<Mailbox> mailbox_;
};

}  // namespace platform
