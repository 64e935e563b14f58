#pragma once

#include <memory>

#include "platform/system/Network.h"

namespace platform {

class RouteMonitor;
class Mailbox;

// The machine's network, read from the kernel's routing tables: a route means reachable, a route without a gateway
// means direct, a cellular device means WWAN. Routes over links that are down do not count. The internet in general is
// the default route of lowest metric, IPv4 before IPv6.
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
    std::unique_ptr<RouteMonitor> monitor_;  // created by the first connection to changed()
    std::shared_ptr<Mailbox> mailbox_;
};

}  // namespace platform
