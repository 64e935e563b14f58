#include "screens/settings/Reachability.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QSignalSpy>
#include <QTest>

#include "platform/system/FixedNetwork.h"
#include "platform/system/HostNetwork.h"
#include "platform_system/NetworkNamespace.h"

using platform::FixedNetwork;
using screens::Reachability;
using enum screens::NetworkStatus;
using namespace platform::reachability;

namespace {

const testing_support::NetworkNamespace ownNetwork;

constexpr int patience = 10'000;  // milliseconds

}  // namespace

TEST(Reachability, StatusForFlags) {
    const std::tuple<std::uint32_t, screens::NetworkStatus, screens::NetworkStatus> cases[] = {
        {0, NotReachable, NotReachable},
        {isWWAN | isDirect | connectionOnDemand, NotReachable, NotReachable},
        {reachable, ReachableViaWiFi, NotReachable},
        {reachable | isDirect, ReachableViaWiFi, ReachableViaWiFi},
        {reachable | isWWAN, ReachableViaWWAN, NotReachable},
        {reachable | isWWAN | isDirect, ReachableViaWWAN, ReachableViaWiFi},
        {reachable | connectionRequired, NotReachable, NotReachable},
        {reachable | connectionRequired | connectionOnTraffic, ReachableViaWiFi, NotReachable},
        {reachable | connectionRequired | connectionOnDemand, ReachableViaWiFi, NotReachable},
        {reachable | connectionRequired | connectionOnTraffic | interventionRequired, NotReachable, NotReachable},
        {reachable | connectionRequired | isWWAN, ReachableViaWWAN, NotReachable},
        {reachable | interventionRequired, ReachableViaWiFi, NotReachable},
    };
    for (const auto& [flags, network, localWiFi] : cases) {
        EXPECT_EQ(Reachability::networkStatusForFlags(flags), network) << flags;
        EXPECT_EQ(Reachability::localWiFiStatusForFlags(flags), localWiFi) << flags;
    }
}

TEST(Reachability, OfAFixedNetwork) {
    const std::tuple<FixedNetwork::Kind, screens::NetworkStatus, screens::NetworkStatus> cases[] = {
        {FixedNetwork::Kind::none, NotReachable, NotReachable},
        {FixedNetwork::Kind::wifi, ReachableViaWiFi, ReachableViaWiFi},
        {FixedNetwork::Kind::wwan, ReachableViaWWAN, NotReachable},
    };
    for (const auto& [kind, internet, localWiFi] : cases) {
        FixedNetwork network(kind);
        EXPECT_EQ(Reachability::reachabilityForInternetConnection(network)->currentReachabilityStatus(), internet);
        EXPECT_EQ(Reachability::reachabilityForLocalWiFi(network)->currentReachabilityStatus(), localWiFi);
        for (const char16_t* name : {u"docs.example", u"192.0.2.7"}) {
            const auto host = Reachability::reachabilityWithHostName(network, QString::fromUtf16(name));
            for (int look = 0; look < 2; ++look) {  // before a name has been looked up, and after
                EXPECT_EQ(host->currentReachabilityStatus(), internet);
                QCoreApplication::processEvents();
            }
        }
        EXPECT_EQ(Reachability::reachabilityWithHostName(network, QString()), nullptr);
        EXPECT_EQ(Reachability::reachabilityWithAddress(network, platform::HostAddress()), nullptr);
    }
}

TEST(Reachability, SaysWhenItCannotTellOfChanges) {
    platform::HostNetwork network;
    const auto internet = Reachability::reachabilityForInternetConnection(network);
    rlimit files{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &files), 0);
    const rlimit none{0, files.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    EXPECT_FALSE(internet->startNotifer());
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &files), 0);
    EXPECT_TRUE(internet->startNotifer());
}

TEST(Reachability, TellsOfChangesBetweenStartAndStop) {
    if (!ownNetwork.isIsolated()) GTEST_SKIP() << "this process may not make a network namespace";
    ownNetwork.reset();
    ASSERT_TRUE(ownNetwork.addLink("wifi0"));
    ASSERT_TRUE(ownNetwork.ip("addr add 192.0.2.2/24 dev wifi0"));
    platform::HostNetwork network;
    const auto internet = Reachability::reachabilityForInternetConnection(network);
    QSignalSpy told(internet.get(), &Reachability::kNetworkReachabilityChangedNotification);
    QSignalSpy changed(&network, &platform::Network::changed);
    for (int each = 0; each < 2; ++each) EXPECT_TRUE(internet->startNotifer());
    // How often it tells of what a command changes, and what the status is then.
    const auto after = [&](const char* command) {
        told.clear();
        EXPECT_TRUE(ownNetwork.ip(command));
        EXPECT_TRUE(changed.wait(patience));
        return std::pair(int(told.count()), internet->currentReachabilityStatus());
    };
    EXPECT_EQ(after("route add default via 192.0.2.1"), std::pair(1, ReachableViaWiFi));
    EXPECT_EQ(told.first().first().value<Reachability*>(), internet.get());
    EXPECT_EQ(after("route del default"), std::pair(1, NotReachable));
    EXPECT_EQ(after("route add 203.0.113.0/24 via 192.0.2.1"), std::pair(0, NotReachable)) << "it leads elsewhere";
    EXPECT_EQ(after("route add default via 192.0.2.1"), std::pair(1, ReachableViaWiFi));
    internet->stopNotifer();
    EXPECT_EQ(after("route del default"), std::pair(0, NotReachable));
}

TEST(Reachability, TellsWhenAHostNameIsResolved) {
    if (!ownNetwork.isIsolated()) GTEST_SKIP() << "this process may not make a network namespace";
    ownNetwork.reset();
    platform::HostNetwork network;
    const auto host = Reachability::reachabilityWithHostName(network, QStringLiteral("localhost"));
    QSignalSpy spy(host.get(), &Reachability::kNetworkReachabilityChangedNotification);
    EXPECT_TRUE(host->startNotifer());
    EXPECT_EQ(host->currentReachabilityStatus(), NotReachable);
    EXPECT_TRUE(spy.wait(patience));
    EXPECT_EQ(host->currentReachabilityStatus(), ReachableViaWiFi);
}
