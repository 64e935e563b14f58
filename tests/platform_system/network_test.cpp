#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include "platform/system/HostNetwork.h"
#include "platform_system/NetworkNamespace.h"

using platform::HostNetwork;
using namespace platform::reachability;
using namespace Qt::StringLiterals;

namespace {

const testing_support::NetworkNamespace ownNetwork;

constexpr int patience = 10'000;  // milliseconds

struct HostNetworkTest : testing::Test {
    void SetUp() override {
        if (!ownNetwork.isIsolated()) GTEST_SKIP() << "this process may not make a network namespace";
        ownNetwork.reset();
    }
};

// "R" reachable, "D" direct, "W" cellular, after each of the addresses that are in the text.
std::string withFlags(HostNetwork& network, const QString& text) {
    QStringList all;
    for (const QString& item : text.split(u", "_s)) {
        const QString address = item.section(u' ', 0, 0);
        const std::uint32_t flags = network.flagsForAddress(platform::HostAddress(address)).value_or(~0u);
        QString letters;
        for (const auto& [flag, letter] : {std::pair(reachable, u'R'), {isDirect, u'D'}, {isWWAN, u'W'}})
            if (flags & flag) letters += letter;
        all.append(address + u' ' + letters);
    }
    return all.join(u", ").toStdString();
}

}  // namespace

TEST_F(HostNetworkTest, FlagsFollowTheRoutes) {
    const QString wifi = u"addr add 192.0.2.2/24 dev wifi0\n"_s;
    const QString wwan = u"addr add 203.0.113.2/32 dev wwan0\n"_s;
    // The links named are made. 0.0.0.0 stands for the internet, 169.254.0.0 for the local link.
    const std::tuple<const char*, QString, QString> cases[] = {
        {"no link", {}, u"0.0.0.0 , 198.51.100.7 , 169.254.0.0 , 2001:db8::1 , 127.0.0.1 RD"_s},
        {"link-local only", u"addr add 169.254.7.1/16 dev wifi0"_s,
         u"0.0.0.0 , 198.51.100.7 , 169.254.0.0 RD, 169.254.9.9 RD"_s},
        {"a gateway", wifi + u"route add default via 192.0.2.1"_s,
         u"0.0.0.0 R, 198.51.100.7 R, 192.0.2.9 RD, 169.254.0.0 R"_s},
        {"local network without a gateway", wifi, u"0.0.0.0 , 198.51.100.7 , 192.0.2.9 RD"_s},
        {"cellular without a gateway", wwan + u"route add default dev wwan0"_s,
         u"0.0.0.0 RDW, 198.51.100.7 RDW, 169.254.0.0 RW"_s},
        {"the preferred of two default routes",
         wifi + wwan + u"route add default dev wwan0 metric 700\nroute add default via 192.0.2.1 metric 600"_s,
         u"0.0.0.0 R, 198.51.100.7 R"_s},
        {"the preferred of two default routes, the other way round",
         wifi + wwan + u"route add default via 192.0.2.1 metric 600\nroute add default dev wwan0 metric 500"_s,
         u"0.0.0.0 RDW"_s},
        {"several hops, the first one down",
         wifi + u"addr add 203.0.113.2/24 dev rmnet_data0\nroute add default nexthop via 192.0.2.1 dev wifi0 "
                "nexthop via 203.0.113.1 dev rmnet_data0\nlink set endwifi0 down"_s,
         u"0.0.0.0 RW, 198.51.100.7 RW"_s},
        {"the cable pulled", wifi + u"route add default via 192.0.2.1\nlink set endwifi0 down"_s,
         u"0.0.0.0 , 198.51.100.7 "_s},
        {"routes that forbid",
         wifi + u"route add unreachable default\nroute add prohibit 198.51.100.0/25\n"
                "route add blackhole 203.0.113.0/24"_s,
         u"0.0.0.0 , 198.51.100.7 , 203.0.113.1 "_s},
        {"a table of its own", wifi + u"route add default via 192.0.2.1 table 77\nrule add from all lookup 77"_s,
         u"0.0.0.0 R, 198.51.100.7 R"_s},
        {"IPv6 only", u"addr add 2001:db8::2/64 dev wifi0 nodad\nroute add default via 2001:db8::1"_s,
         u"0.0.0.0 R, 2001:db8:1::1 R, 2001:db8::9 RD, 198.51.100.7 , ::1 RD"_s},
        {"IPv6 forbidden", u"route add unreachable default metric 9\n-6 route add unreachable default"_s,
         u"0.0.0.0 , 2001:db8::1 "_s},
    };
    for (const auto& [what, commands, flags] : cases) {
        SCOPED_TRACE(what);
        ownNetwork.reset();
        for (const char* link : {"wifi0", "wwan0", "rmnet_data0"})
            ASSERT_TRUE(!commands.contains(QLatin1String(link)) || ownNetwork.addLink(link));
        ASSERT_TRUE(ownNetwork.ip(commands.toStdString()));
        HostNetwork network;
        // The kernel notices in its own time that the other end of a link has gone down.
        const std::string wanted = flags.toStdString();
        static_cast<void>(QTest::qWaitFor(
            [&network, &wanted] { return withFlags(network, QString::fromStdString(wanted)) == wanted; }, patience));
        EXPECT_EQ(withFlags(network, flags), wanted);
    }
}

TEST_F(HostNetworkTest, TellsOfChanges) {
    std::string manyAtOnce;
    for (int i = 0; i < 40; ++i) manyAtOnce += "addr add 198.51.100." + std::to_string(i) + "/32 dev wifi0\n";
    ASSERT_TRUE(ownNetwork.ip("link add wifi0 type veth peer name endwifi0\nlink set wifi0 up"));
    HostNetwork network;
    for (const std::string& commands :
         {std::string("link set endwifi0 up"), std::string("addr add 192.0.2.2/24 dev wifi0"),
          std::string("route add default via 192.0.2.1"), std::string("route add 2001:db8:1::/48 dev wifi0"),
          std::string("route del default"), manyAtOnce}) {
        QSignalSpy spy(&network, &platform::Network::changed);
        ASSERT_TRUE(ownNetwork.ip(commands));
        EXPECT_TRUE(spy.wait(patience)) << commands;
    }
}

TEST_F(HostNetworkTest, ResolvesNamesLater) {
    HostNetwork network;
    QObject receiver;
    std::optional<QList<platform::HostAddress>> found, missing;
    network.resolveHostName(u"localhost"_s, receiver, [&](const auto& addresses) { found = addresses; });
    network.resolveHostName(u"nobody.invalid"_s, receiver, [&](const auto& addresses) { missing = addresses; });
    auto inUse = std::make_shared<bool>();
    const std::weak_ptr<bool> untilHandled = inUse;
    {
        QObject gone;
        network.resolveHostName(u"localhost"_s, gone, [inUse](const auto&) { FAIL() << "nobody to tell"; });
    }
    inUse.reset();
    EXPECT_FALSE(found || missing);
    ASSERT_TRUE(QTest::qWaitFor([&] { return found && missing && untilHandled.expired(); }, 60'000));
    ASSERT_FALSE(found->isEmpty());
    for (const platform::HostAddress& address : *found)
        EXPECT_TRUE(address == platform::HostAddress(u"127.0.0.1"_s) || address == platform::HostAddress(u"::1"_s));
    EXPECT_TRUE(missing->isEmpty());
}
