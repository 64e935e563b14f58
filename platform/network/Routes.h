#pragma once

#include "platform/network/HostAddress.h"

namespace platform {

// An entry of the kernel's routing tables.
struct Route {
    int device = 0;  // interface index of the next hop (of several: the first whose link is up)
    bool hasGateway = false;
    int prefixLength = 0;  // of the destination; 0 for a default route
};

struct RouteAnswer {
    enum class Kind { unknown, noRoute, route } kind = Kind::unknown;
    Route route{};  // of the last kind
};

// The route that packets to the address take now. One request to the kernel, answered immediately. Any thread.
RouteAnswer routeTo(const HostAddress& address);

// The default route of lowest metric: of IPv4, or of IPv6 when IPv4 has none.
RouteAnswer defaultRoute();

// Whether a network device belongs to the cellular network, by its type or name.
bool isCellular(int device);

}  // namespace platform
