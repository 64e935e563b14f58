#pragma once

#include <QList>
#include <QObject>
#include <cstdint>
#include <functional>
#include <optional>

#include "platform/network/HostAddress.h"

namespace platform {

// Bits that describe how a destination can be reached.
namespace reachability {

inline constexpr std::uint32_t reachable = 1U << 1;
inline constexpr std::uint32_t connectionRequired = 1U << 2;
inline constexpr std::uint32_t connectionOnTraffic = 1U << 3;
inline constexpr std::uint32_t interventionRequired = 1U << 4;
inline constexpr std::uint32_t connectionOnDemand = 1U << 5;
inline constexpr std::uint32_t isDirect = 1U << 17;  // without a gateway
inline constexpr std::uint32_t isWWAN = 1U << 18;    // over the cellular network

}  // namespace reachability

// The current network of the device. Main thread.
class Network : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // Bits of `reachability`, 0 when there is no route to the address; nothing when the state is unknown. The address
    // 0.0.0.0 stands for the internet in general. Does not block.
    virtual std::optional<std::uint32_t> flagsForAddress(const HostAddress& address) = 0;

    using Resolved = std::function<void(const QList<HostAddress>& addresses)>;

    // Resolves the name asynchronously, then calls `resolved` from the event loop, with an empty list on failure. Not
    // called once `receiver` has been destroyed.
    virtual void resolveHostName(const QString& name, QObject& receiver, Resolved resolved) = 0;

    // Whether changed() is emitted; false when the system cannot be monitored. Valid after connecting to changed().
    virtual bool isWatched() const = 0;

Q_SIGNALS:
    // The flags of an address may have changed. Monitoring starts with the first connection.
    void changed();
};

}  // namespace platform
