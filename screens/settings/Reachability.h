#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>

#include "platform/network/HostAddress.h"

namespace platform {
class Network;
}

namespace screens {

enum NetworkStatus { NotReachable = 0, ReachableViaWiFi = 1, ReachableViaWWAN = 2 };

// Whether a connection to the internet, to a host or to an address could be made now, and over which kind of network.
// Ask it any number of times; between startNotifer() and stopNotifer() it also tells of changes by itself.
//
// Host names are looked up in the background, so that asking never waits: until a name's first look-up has ended, the
// host is as reachable as the internet in general, and when it found no address, the host is NotReachable. That there
// is a destination, and whom a change is told, takes no assertion: constructor and signal see to it. Main thread.
class Reachability : public QObject {
    Q_OBJECT
public:
    // Null for an empty name or a null address. `network` outlives the object.
    static std::unique_ptr<Reachability> reachabilityWithHostName(platform::Network& network, const QString& hostName);
    static std::unique_ptr<Reachability> reachabilityWithAddress(platform::Network& network,
                                                                 const platform::HostAddress& address);
    static std::unique_ptr<Reachability> reachabilityForInternetConnection(platform::Network& network);
    // Of the local link: ReachableViaWiFi or NotReachable.
    static std::unique_ptr<Reachability> reachabilityForLocalWiFi(platform::Network& network);
    ~Reachability() override;

    NetworkStatus currentReachabilityStatus() const;
    bool connectionRequired() const;

    // Bits of platform::reachability to status.
    static NetworkStatus localWiFiStatusForFlags(std::uint32_t flags);
    static NetworkStatus networkStatusForFlags(std::uint32_t flags);

    // Starting twice is starting once. False when changes cannot be told of.
    bool startNotifer();
    void stopNotifer();

Q_SIGNALS:
    // What flags say of the destination has changed; carries no status.
    void kNetworkReachabilityChangedNotification(screens::Reachability* reachability);

private:
    Reachability(platform::Network& network, QList<platform::HostAddress> addresses, QString hostName = {});
    std::optional<std::uint32_t> flags() const;
    void resolveHostName();
    void networkHasChanged();
    void tellIfChanged();

    platform::Network& network_;
    QString hostName_;                        // empty for an address
    QList<platform::HostAddress> addresses_;  // of a host: what the last look-up found
    bool isLookingUp_;                        // for the first time
    bool localWiFiRef_ = false;
    QMetaObject::Connection notifier_;
    std::optional<std::uint32_t> toldFlags_;  // while the notifier runs
};

}  // namespace screens
