#include "engine/Host.h"

#include <gtest/gtest.h>

#include "engine/HostPattern.h"

namespace engine {
namespace {

using namespace std::string_view_literals;

TEST(Host, HasOneSpelling) {
    const std::string longLabel(63, 'a');
    const std::string tooLongLabel = longLabel + 'a';
    const std::string longName = longLabel + '.' + longLabel + '.' + longLabel + '.' + std::string(61, 'a');
    const std::string tooLongName = longName + 'a';
    const std::tuple<std::string_view, Host::Kind, std::string_view> cases[] = {
        {"Example.NET", Host::Kind::name, "example.net"},
        {"example.net.", Host::Kind::name, "example.net"},
        {"bücher.example", Host::Kind::name, "xn--bcher-kva.example"},
        {"BÜCHER.example", Host::Kind::name, "xn--bcher-kva.example"},
        {"straße.example", Host::Kind::name, "xn--strae-oqa.example"},
        {"bücher。example。", Host::Kind::name, "xn--bcher-kva.example"},
        {"_dns.example", Host::Kind::name, "_dns.example"},
        {"192.0.2.7", Host::Kind::address, "192.0.2.7"},
        {"192.0.2.7.", Host::Kind::address, "192.0.2.7"},
        {"１９２.0.2.7", Host::Kind::address, "192.0.2.7"},
        {"2001:DB8:0:0::7", Host::Kind::address, "2001:db8::7"},
        {"[2001:db8::7]", Host::Kind::address, "2001:db8::7"},
        {"fe80::1%wlan0", Host::Kind::address, "fe80::1"},
        {"::ffff:192.0.2.7", Host::Kind::address, "192.0.2.7"},
        {longLabel, Host::Kind::name, longLabel},
        {longName, Host::Kind::name, longName},
    };
    for (const auto& [text, kind, spelling] : cases) {
        SCOPED_TRACE(text);
        const auto host = parseHost(text);
        ASSERT_TRUE(host);
        EXPECT_EQ(host->kind, kind);
        EXPECT_EQ(host->text, spelling);
    }
    for (const std::string_view none :
         {""sv, "."sv, ".example.net"sv, "192.0.2.7\0x"sv, "example.."sv, "b\xFF.example"sv,
          std::string_view(tooLongLabel), std::string_view(tooLongName), "a..example"sv, "https://example.net/"sv,
          "two words.example"sv, "a*b.example"sv, "2001:db8::7::1"sv, "[example.net]"sv})
        EXPECT_FALSE(parseHost(none)) << none;
}

TEST(HostPattern, MatchesHostsPortsAndWhatLiesBelow) {
    const std::pair<std::string_view, std::vector<std::pair<std::string_view, bool>>> cases[] = {
        {"example.net", {{"example.net", true}, {"example.net:80", true}, {"a.example.net", false}}},
        {" Example.net ", {{"example.net", true}}},
        {"*example.net",
         {{"example.net", true}, {"a.b.example.net", true}, {"notexample.net", false}, {"example.net.org", false}}},
        {"*.example.net", {{"example.net", false}, {"a.example.net", true}}},
        {"*bücher.example", {{"xn--bcher-kva.example", true}, {"www.xn--bcher-kva.example", true}}},
        {"*", {{"example.net", true}, {"192.0.2.7:443", true}}},
        {"*:80", {{"example.net:80", true}, {"example.net:443", false}, {"example.net", false}}},
        {"example.net:80", {{"example.net:80", true}, {"example.net:8080", false}, {"example.net", false}}},
        {"*example.net:80", {{"a.example.net:80", true}, {"a.example.net:81", false}}},
        {"192.0.2.7", {{"192.0.2.7", true}, {"192.0.2.70", false}, {"::ffff:192.0.2.7", true}}},
        {"*192.0.2.7", {{"192.0.2.7", true}, {"1.192.0.2.7", false}}},
        {"192.0.2.7:80", {{"192.0.2.7:80", true}, {"192.0.2.7", false}}},
        {"2001:db8::80", {{"2001:db8::80", true}, {"2001:db8:0::80", true}, {"[2001:db8::80]:443", true}}},
        {"[2001:db8::7]:80", {{"[2001:db8::7]:80", true}, {"[2001:db8::7]:81", false}}},
        // No patterns.
        {"", {{"example.net", false}}},
        {"example.net:0", {{"example.net", false}, {"example.net:80", false}}},
        {"example.net:65536", {{"example.net", false}}},
        {"example.net:http", {{"example.net", false}}},
        {"http://example.net", {{"example.net", false}}},
        {"ex*mple.net", {{"example.net", false}}},
    };
    for (const auto& [text, places] : cases) {
        const auto pattern = HostPattern::parse(text);
        for (const auto& [place, matches] : places) {
            SCOPED_TRACE(testing::Message() << text << " and " << place);
            const auto destination = parseDestination(place);
            ASSERT_TRUE(destination);
            EXPECT_EQ(pattern && pattern->matches(*destination), matches);
        }
    }
}

TEST(HostPattern, ClosenessOrdersWhatMatchesTheSameHost) {
    const std::string_view ordered[] = {"*",
                                        "*:443",
                                        "*net",
                                        "*example.net",
                                        "*example.net:443",
                                        "*.example.net",
                                        "*a.example.net",
                                        "a.example.net",
                                        "a.example.net:443"};
    for (std::size_t i = 1; i < std::size(ordered); ++i)
        EXPECT_LT(HostPattern::parse(ordered[i - 1])->closeness(), HostPattern::parse(ordered[i])->closeness())
            << ordered[i];
    EXPECT_EQ(HostPattern::parse("a.example.net")->closeness(), HostPattern::parse("192.0.2.7")->closeness());
}

}  // namespace
}  // namespace engine
