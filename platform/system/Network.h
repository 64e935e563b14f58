#pragma once

#include <QList>
#include <QObject>
#include <cstdint>
#include <functional>
#include <optional>

#include "platform/system/HostAddress.h"

namespace platform {

// How a destination could be reached; bits.
namespace reachability {

inline constexpr std::uint32_t reachable = 1U << 1;
inline constexpr std::uint32_t connectionRequired = 1U << 2;
inline constexpr std::uint32_t connectionOnTraffic = 1U << 3;
inline constexpr std::uint32_t interventionRequired = 1U << 4;
inline constexpr std::uint32_t connectionOnDemand = 1U << 5;
inline constexpr std::uint32_t isDirect = 1U << 17;  // no gateway is between
inline constexpr std::uint32_t isWWAN = 1U << 18;    // over the cellular network

}  // namespace reachability

// What the device could connect to now. Main thread.
class Network : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // Bits of `reachability`, none of them when nothing leads to the address; nothing when it cannot be told. The
    // address 0.0.0.0 stands for the internet in general. Answers at once.
    virtual std::optional<std::uint32_t> flagsForAddress(const HostAddress& address) = 0;

    using Resolved = std::function<void(const QList<HostAddress>& addresses)>;

    // Looks the name up in the background and then calls `resolved`, with no address when there is none; not when
    // `receiver` is gone by then. Never calls before it returns.
    virtual void resolveHostName(const QString& name, QObject& receiver, Resolved resolved) = 0;

    // Whether changed() is going to tell; not when the system does not let itself be watched. Ask when connected.
    virtual bool isWatched() const = 0;

Q_SIGNALS:
    // Something that flags may depend on has changed. Watched for from the first connection on.
    void changed();
};

}  // namespace platform
