#pragma once

#include "platform/system/Network.h"

namespace platform {

// A simulated network, independent of the machine's. Every host name resolves while there is a network; none does
// without.
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
