#include "platform/system/HostNetwork.h"

#include <QHostInfo>
#include <QMetaMethod>
#include <QPointer>
#include <utility>

#include "platform/system/RouteMonitor.h"
#include "platform/system/Routes.h"

namespace platform {

HostNetwork::HostNetwork(QObject* parent) : Network(parent) {}

HostNetwork::~HostNetwork() = default;

std::optional<std::uint32_t> HostNetwork::flagsForAddress(const QHostAddress& address) {
    using enum RouteAnswer::Kind;
    const RouteAnswer answer = address == QHostAddress::AnyIPv4 ? defaultRoute() : routeTo(address);
    if (answer.kind == unknown) return {};
    if (answer.kind == noRoute) return 0;
    std::uint32_t flags = reachability::reachable;
    // The link-local network is never reached through a default route, even where that has no gateway.
    const bool isOnLink = !address.isLinkLocal() || answer.route.prefixLength > 0;
    if (!answer.route.hasGateway && isOnLink) flags |= reachability::isDirect;
    if (isCellular(answer.route.device)) flags |= reachability::isWWAN;
    return flags;
}

void HostNetwork::resolveHostName(const QString& name, QObject& receiver, Resolved resolved) {
    // Bound to this object, not to the receiver: a lookup whose context goes away is never freed.
    QHostInfo::lookupHost(name, this,
                          [receiver = QPointer(&receiver), resolved = std::move(resolved)](const QHostInfo& host) {
                              if (receiver) resolved(host.addresses());
                          });
}

void HostNetwork::connectNotify(const QMetaMethod& signal) {
    if (signal != QMetaMethod::fromSignal(&Network::changed) || monitor_) return;
    monitor_ = std::make_unique<RouteMonitor>([this] { Q_EMIT changed(); });
}

}  // namespace platform
