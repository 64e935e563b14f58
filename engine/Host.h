#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace engine {

// A host in the one spelling in which rules and connections are compared. Any thread.
struct Host {
    enum class Kind { name, address };
    Kind kind = Kind::name;
    // A name: lower case, without a dot at its end, international ones in their ASCII form (UTS #46, nontransitional).
    // An address: as inet_ntop() writes it (RFC 5952), without brackets and zone; an IPv4-mapped IPv6 address as the
    // IPv4 one.
    std::string text;

    bool operator==(const Host&) const = default;
};

// Nothing when the text is neither a name (letters, digits, '-', '_' and dots, as long as RFC 1035 allows) nor an
// address, in brackets or not. A name in ASCII takes one allocation, or none when it is short.
std::optional<Host> parseHost(std::string_view text);

// False only where parseHost() makes no address of a text in ASCII: most hosts are names, which this tells at less than
// a tenth of the cost.
bool mayBeAddress(std::string_view text);

// A host and, unless it is 0, a port.
struct HostAndPort {
    std::string_view host;
    std::uint16_t port = 0;
};

// Splits "host:port", "[address]:port" and either without a port. A text with several colons and no brackets is an IPv6
// address without a port. Nothing when what follows the host is no port from 1 to 65535.
std::optional<HostAndPort> splitPort(std::string_view text);

}  // namespace engine
