#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include "platform/system/HostNetwork.h"
#include "platform_system/NetworkNamespace.h"

using platform::HostNetwork;
using namespace platform::reachability;

namespace {

const testing_support::NetworkNamespace ownNetwork;

constexpr int patience = 10'000;  // milliseconds

class HostNetworkTest : public testing::Test {
protected:
    void SetUp() override {
        if (!ownNetwork.isIsolated()) GTEST_SKIP() << "this process may not make a network namespace";
        ownNetwork.reset();
    }
};

constexpr const char* internet = "0.0.0.0";
constexpr const char* localLink = "169.254.0.0";
constexpr const char* far = "198.51.100.7";

}  // namespace

TEST_F(HostNetworkTest, FlagsFollowTheRoutes) {
    struct Case {
        const char* what;
        std::vector<std::string> links;
        std::string commands;
        std::vector<std::pair<const char*, std::uint32_t>> flags;
    };
    const std::string wifi = "addr add 192.0.2.2/24 dev wifi0\n";
    const std::string phone = "addr add 203.0.113.2/32 dev wwan0\n";
    const Case cases[] = {
        {"no link",
         {},
         "",
         {{internet, 0}, {far, 0}, {localLink, 0}, {"2001:db8::1", 0}, {"127.0.0.1", reachable | isDirect}}},
        {"link-local only",
         {"wifi0"},
         "addr add 169.254.7.1/16 dev wifi0",
         {{internet, 0}, {far, 0}, {localLink, reachable | isDirect}, {"169.254.9.9", reachable | isDirect}}},
        {"a gateway",
         {"wifi0"},
         wifi + "route add default via 192.0.2.1",
         {{internet, reachable}, {far, reachable}, {"192.0.2.9", reachable | isDirect}, {localLink, reachable}}},
        {"local network without a gateway",
         {"wifi0"},
         wifi,
         {{internet, 0}, {far, 0}, {"192.0.2.9", reachable | isDirect}}},
        {"a cellular link without a gateway",
         {"wwan0"},
         phone + "route add default dev wwan0",
         {{internet, reachable | isDirect | isWWAN},
          {far, reachable | isDirect | isWWAN},
          {localLink, reachable | isWWAN}}},
        {"the preferred of two default routes",
         {"wifi0", "wwan0"},
         wifi + phone + "route add default dev wwan0 metric 700\nroute add default via 192.0.2.1 metric 600",
         {{internet, reachable}, {far, reachable}}},
        {"the preferred of two default routes, the other way round",
         {"wifi0", "wwan0"},
         wifi + phone + "route add default via 192.0.2.1 metric 600\nroute add default dev wwan0 metric 500",
         {{internet, reachable | isDirect | isWWAN}}},
        {"a default route of several hops, the first one down",
         {"wifi0", "rmnet_data0"},
         wifi + "addr add 203.0.113.2/24 dev rmnet_data0\n"
                "route add default nexthop via 192.0.2.1 dev wifi0 nexthop via 203.0.113.1 dev rmnet_data0\n"
                "link set endwifi0 down",
         {{internet, reachable | isWWAN}, {far, reachable | isWWAN}}},
        {"the cable pulled",
         {"wifi0"},
         wifi + "route add default via 192.0.2.1\nlink set endwifi0 down",
         {{internet, 0}, {far, 0}}},
        {"routes that forbid",
         {"wifi0"},
         wifi + "route add unreachable default\nroute add prohibit 198.51.100.0/25\nroute add blackhole 203.0.113.0/24",
         {{internet, 0}, {far, 0}, {"203.0.113.1", 0}}},
        {"a default route in a table of its own",
         {"wifi0"},
         wifi + "route add default via 192.0.2.1 table 77\nrule add from all lookup 77",
         {{internet, reachable}, {far, reachable}}},
        {"IPv6 only",
         {"wifi0"},
         "addr add 2001:db8::2/64 dev wifi0 nodad\nroute add default via 2001:db8::1",
         {{internet, reachable},
          {"2001:db8:1::1", reachable},
          {"2001:db8::9", reachable | isDirect},
          {far, 0},
          {"::1", reachable | isDirect}}},
        {"IPv6 forbidden",
         {"wifi0"},
         "route add unreachable default metric 9\n-6 route add unreachable default",
         {{internet, 0}, {"2001:db8::1", 0}}},
    };
    for (const Case& item : cases) {
        SCOPED_TRACE(item.what);
        ownNetwork.reset();
        for (const std::string& link : item.links) ASSERT_TRUE(ownNetwork.addLink(link));
        ASSERT_TRUE(ownNetwork.ip(item.commands));
        HostNetwork network;
        for (const auto& [address, flags] : item.flags) {
            const platform::HostAddress destination(QString::fromUtf8(address));
            // The kernel notices in its own time that the other end of a link has gone down.
            static_cast<void>(QTest::qWaitFor(
                [&, wanted = flags] { return network.flagsForAddress(destination) == wanted; }, patience));
            EXPECT_EQ(network.flagsForAddress(destination), flags) << address;
        }
    }
}

TEST_F(HostNetworkTest, TellsOfChanges) {
    const std::pair<const char*, std::string> steps[] = {
        {"link", "link set endwifi0 up"},
        {"address and its routes", "addr add 192.0.2.2/24 dev wifi0"},
        {"route", "route add default via 192.0.2.1"},
        {"IPv6 route", "route add 2001:db8:1::/48 dev wifi0"},
        {"route gone", "route del default"},
        {"many at once",
         [] {
             std::string commands;
             for (int i = 0; i < 40; ++i) commands += "addr add 198.51.100." + std::to_string(i) + "/32 dev wifi0\n";
             return commands;
         }()},
    };
    ASSERT_TRUE(ownNetwork.ip("link add wifi0 type veth peer name endwifi0\nlink set wifi0 up"));
    HostNetwork network;
    for (const auto& [what, commands] : steps) {
        QSignalSpy spy(&network, &platform::Network::changed);
        ASSERT_TRUE(ownNetwork.ip(commands));
        EXPECT_TRUE(spy.wait(patience)) << what;
    }
}

TEST_F(HostNetworkTest, ResolvesNamesLater) {
    HostNetwork network;
    QObject receiver;
    std::optional<QList<platform::HostAddress>> found, missing;
    network.resolveHostName(QStringLiteral("localhost"), receiver, [&](const auto& addresses) { found = addresses; });
    network.resolveHostName(QStringLiteral("nobody.invalid"), receiver,
                            [&](const auto& addresses) { missing = addresses; });
    {
        QObject gone;
        network.resolveHostName(QStringLiteral("localhost"), gone, [](const auto&) { FAIL() << "nobody to tell"; });
    }
    EXPECT_FALSE(found || missing);
    ASSERT_TRUE(QTest::qWaitFor([&] { return found && missing; }, 60'000));
    ASSERT_FALSE(found->isEmpty());
    for (const platform::HostAddress& address : *found)
        EXPECT_TRUE(address == platform::HostAddress(QStringLiteral("127.0.0.1")) ||
                    address == platform::HostAddress(QStringLiteral("::1")));
    EXPECT_TRUE(missing->isEmpty());
}
