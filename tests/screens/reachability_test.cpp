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
    struct Case {
        std::uint32_t flags;
        screens::NetworkStatus network, localWiFi;
    };
    const Case cases[] = {
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
    for (const Case& item : cases) {
        EXPECT_EQ(Reachability::networkStatusForFlags(item.flags), item.network) << item.flags;
        EXPECT_EQ(Reachability::localWiFiStatusForFlags(item.flags), item.localWiFi) << item.flags;
    }
}

TEST(Reachability, OfAFixedNetwork) {
    struct Case {
        FixedNetwork::Kind kind;
        screens::NetworkStatus internet, localWiFi;
    };
    const Case cases[] = {
        {FixedNetwork::Kind::none, NotReachable, NotReachable},
        {FixedNetwork::Kind::wifi, ReachableViaWiFi, ReachableViaWiFi},
        {FixedNetwork::Kind::wwan, ReachableViaWWAN, NotReachable},
    };
    for (const Case& item : cases) {
        FixedNetwork network(item.kind);
        const auto internet = Reachability::reachabilityForInternetConnection(network);
        EXPECT_EQ(internet->currentReachabilityStatus(), item.internet);
        EXPECT_FALSE(internet->connectionRequired());
        EXPECT_EQ(Reachability::reachabilityForLocalWiFi(network)->currentReachabilityStatus(), item.localWiFi);
        const auto host = Reachability::reachabilityWithHostName(network, QStringLiteral("docs.example"));
        EXPECT_EQ(host->currentReachabilityStatus(), item.internet) << "its name has not been looked up yet";
        QCoreApplication::processEvents();
        EXPECT_EQ(host->currentReachabilityStatus(), item.internet);
    }
}

TEST(Reachability, OfNothingIsNull) {
    FixedNetwork network(FixedNetwork::Kind::wifi);
    EXPECT_EQ(Reachability::reachabilityWithHostName(network, QString()), nullptr);
    EXPECT_EQ(Reachability::reachabilityWithAddress(network, platform::HostAddress()), nullptr);
    const auto literal = Reachability::reachabilityWithHostName(network, QStringLiteral("192.0.2.7"));
    EXPECT_EQ(literal->currentReachabilityStatus(), ReachableViaWiFi) << "an address needs no looking up";
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
    QSignalSpy spy(internet.get(), &Reachability::kNetworkReachabilityChangedNotification);
    const auto hears = [&](const char* command) {
        spy.clear();
        EXPECT_TRUE(ownNetwork.ip(command));
        return spy.wait(patience) && spy.count() == 1;
    };

    EXPECT_TRUE(internet->startNotifer());
    EXPECT_TRUE(internet->startNotifer());
    EXPECT_EQ(internet->currentReachabilityStatus(), NotReachable);
    EXPECT_TRUE(hears("route add default via 192.0.2.1"));
    EXPECT_EQ(spy.first().first().value<Reachability*>(), internet.get());
    EXPECT_EQ(internet->currentReachabilityStatus(), ReachableViaWiFi);
    EXPECT_TRUE(hears("route del default"));
    EXPECT_EQ(internet->currentReachabilityStatus(), NotReachable);

    // A route that leads elsewhere is no news; the route after it is.
    ASSERT_TRUE(ownNetwork.ip("route add 203.0.113.0/24 via 192.0.2.1"));
    EXPECT_TRUE(hears("route add default via 192.0.2.1"));

    internet->stopNotifer();
    QSignalSpy networkSpy(&network, &platform::Network::changed);
    spy.clear();
    ASSERT_TRUE(ownNetwork.ip("route del default"));
    ASSERT_TRUE(networkSpy.wait(patience));
    EXPECT_EQ(spy.count(), 0);
    EXPECT_EQ(internet->currentReachabilityStatus(), NotReachable);
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
