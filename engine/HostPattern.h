#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "engine/Host.h"

namespace engine {

// The other end of a connection: the name that was looked up, the address, or both; each in Host's spelling, or empty.
struct Destination {
    std::string name;
    std::string address;
    std::uint16_t port = 0;  // 0: unknown, which no pattern with a port matches
};

// "host" or "host:port", as people write it. Nothing when it is no host or no port.
std::optional<Destination> parseDestination(std::string_view text);

// How closely a pattern describes what it matches. A whole host is closer than one with an asterisk, a longer name
// behind an asterisk closer than a shorter one, and with a port closer than without.
struct Closeness {
    bool isWholeHost = false;
    std::size_t nameSize = 0;  // of a pattern with an asterisk
    bool hasPort = false;

    bool operator==(const Closeness&) const = default;
    auto operator<=>(const Closeness& other) const {
        return std::tie(isWholeHost, nameSize, hasPort) <=> std::tie(other.isWholeHost, other.nameSize, other.hasPort);
    }
};

inline constexpr std::uint16_t lookupPort = 53;  // RFC 1035

// The pattern of a rule entry:
//
//     example.net      this host
//     *example.net     this host and all below it; "*.example.net" those below it alone, "*" every host
//     192.0.2.7        a host by its address; 2001:db8::7 and [2001:db8::7] as well
//     example.net:80   each of them on this port alone; an IPv6 address then needs its brackets
//
// An entry that allows one port allows the lookup of the name as well, which is a connection to lookupPort: without it
// the port would never be reached.
//
// Any thread.
class HostPattern {
public:
    // Nothing when the text is no pattern; such an entry matches no connection. Spaces around it do not count.
    static std::optional<HostPattern> parse(std::string_view rule);

    // False only where parse() of the text gives no pattern that matches the host. Excludes most rules of a long list,
    // at a tenth of parse()'s cost.
    static bool mayMatchHost(std::string_view rule, const Destination& destination);

    bool matches(const Destination& destination) const;
    // The same, whatever the port is.
    bool matchesHost(const Destination& destination) const;
    Closeness closeness() const;

    enum class Scope { host, hostAndBelow, below, everything };
    Scope scope() const { return scope_; }
    const Host& host() const { return host_; }    // empty when the scope is everything
    std::uint16_t port() const { return port_; }  // 0: every port

private:
    Scope scope_ = Scope::host;
    Host host_;
    std::uint16_t port_ = 0;
};

}  // namespace engine
