#pragma once

#include "platform/system/Network.h"

namespace platform {

// A network that is what it is said to be, whatever the machine has. Every host name has an address while there is a
// network, and none without.
class FixedNetwork : public Network {
    Q_OBJECT
public:
    enum class Kind { none, wifi, wwan };

    explicit FixedNetwork(Kind kind, QObject* parent = nullptr);

    std::optional<std::uint32_t> flagsForAddress(const HostAddress& address) override;
    void resolveHostName(const QString& name, QObject& receiver, Resolved resolved) override;
    bool isWatched() const override { return true; }

private:
    Kind kind_;
};

}  // namespace platform
