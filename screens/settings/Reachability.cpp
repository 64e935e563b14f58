#include "screens/settings/Reachability.h"

#include <utility>

#include "platform/system/Network.h"

namespace screens {

namespace flag = platform::reachability;

Reachability::Reachability(platform::Network& network, QList<platform::HostAddress> addresses, QString hostName)
    : network_(network),
      hostName_(std::move(hostName)),
      addresses_(std::move(addresses)),
      isLookingUp_(!hostName_.isEmpty()) {
    if (isLookingUp_) resolveHostName();
}

Reachability::~Reachability() {
    stopNotifer();
}

std::unique_ptr<Reachability> Reachability::reachabilityWithHostName(platform::Network& network,
                                                                     const QString& hostName) {
    const platform::HostAddress address(hostName);
    if (!address.isNull()) return reachabilityWithAddress(network, address);
    if (hostName.isEmpty()) return nullptr;
    return std::unique_ptr<Reachability>(new Reachability(network, {}, hostName));
}

std::unique_ptr<Reachability> Reachability::reachabilityWithAddress(platform::Network& network,
                                                                    const platform::HostAddress& address) {
    if (address.isNull()) return nullptr;
    return std::unique_ptr<Reachability>(new Reachability(network, {address}));
}

std::unique_ptr<Reachability> Reachability::reachabilityForInternetConnection(platform::Network& network) {
    return reachabilityWithAddress(network, platform::HostAddress::anyIPv4());
}

std::unique_ptr<Reachability> Reachability::reachabilityForLocalWiFi(platform::Network& network) {
    auto reachability = reachabilityWithAddress(network, platform::HostAddress(QStringLiteral("169.254.0.0")));
    reachability->localWiFiRef_ = true;
    return reachability;
}

NetworkStatus Reachability::currentReachabilityStatus() const {
    const auto known = flags();
    if (!known) return NotReachable;
    return localWiFiRef_ ? localWiFiStatusForFlags(*known) : networkStatusForFlags(*known);
}

bool Reachability::connectionRequired() const {
    return flags().value_or(0) & flag::connectionRequired;
}

NetworkStatus Reachability::localWiFiStatusForFlags(std::uint32_t flags) {
    return (flags & flag::reachable) && (flags & flag::isDirect) ? ReachableViaWiFi : NotReachable;
}

NetworkStatus Reachability::networkStatusForFlags(std::uint32_t flags) {
    if (!(flags & flag::reachable)) return NotReachable;
    if (flags & flag::isWWAN) return ReachableViaWWAN;
    if (!(flags & flag::connectionRequired)) return ReachableViaWiFi;
    const bool connectsByItself = flags & (flag::connectionOnDemand | flag::connectionOnTraffic);
    return connectsByItself && !(flags & flag::interventionRequired) ? ReachableViaWiFi : NotReachable;
}

// Of a host with several addresses, those of the first one that can be reached.
std::optional<std::uint32_t> Reachability::flags() const {
    if (isLookingUp_) return network_.flagsForAddress(platform::HostAddress::anyIPv4());
    std::optional<std::uint32_t> known;
    for (const platform::HostAddress& address : addresses_) {
        known = network_.flagsForAddress(address);
        if (known && (*known & flag::reachable)) break;
    }
    return known;
}

void Reachability::resolveHostName() {
    network_.resolveHostName(hostName_, *this, [this](const QList<platform::HostAddress>& addresses) {
        addresses_ = addresses;
        isLookingUp_ = false;
        tellIfChanged();
    });
}

bool Reachability::startNotifer() {
    if (notifier_) return true;
    notifier_ = connect(&network_, &platform::Network::changed, this, &Reachability::networkHasChanged);
    toldFlags_ = flags();
    if (!network_.isWatched()) stopNotifer();
    return static_cast<bool>(notifier_);
}

void Reachability::stopNotifer() {
    disconnect(std::exchange(notifier_, {}));
}

// Another network may know the name by another address.
void Reachability::networkHasChanged() {
    if (!hostName_.isEmpty()) resolveHostName();
    tellIfChanged();
}

void Reachability::tellIfChanged() {
    if (!notifier_) return;
    const auto known = flags();
    if (std::exchange(toldFlags_, known) != known) Q_EMIT kNetworkReachabilityChangedNotification(this);
}

}  // namespace screens
