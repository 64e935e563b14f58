#include "platform/system/FixedNetwork.h"

#include <utility>

namespace platform {

FixedNetwork::FixedNetwork(Kind kind, QObject* parent) : Network(parent), kind_(kind) {}

std::optional<std::uint32_t> FixedNetwork::flagsForAddress(const HostAddress& address) {
    if (kind_ == Kind::none) return 0;
    if (kind_ == Kind::wwan) return reachability::reachable | reachability::isWWAN;
    return address.isLinkLocal() ? reachability::reachable | reachability::isDirect : reachability::reachable;
}

void FixedNetwork::resolveHostName(const QString&, QObject& receiver, Resolved resolved) {
    QList<HostAddress> addresses;
    if (kind_ != Kind::none)
        addresses.append(HostAddress(QStringLiteral("192.0.2.1")));  // reserved for documentation (RFC 5737)
    QMetaObject::invokeMethod(
        &receiver, [resolved = std::move(resolved), addresses] { resolved(addresses); }, Qt::QueuedConnection);
}

}  // namespace platform
