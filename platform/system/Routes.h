#pragma once

#include "platform/system/HostAddress.h"

namespace platform {

// One entry of the kernel's routing tables.
struct Route {
    int device = 0;  // interface index of the (first working) next hop
    bool hasGateway = false;
    int prefixLength = 0;  // of the destination; 0 for a default route
};

struct RouteAnswer {
    enum class Kind { unknown, noRoute, route } kind = Kind::unknown;
    Route route{};  // of the last kind
};

// The route that packets to the address take now. The kernel answers at once. Any thread.
RouteAnswer routeTo(const HostAddress& address);

// The preferred default route: of IPv4, or of IPv6 when that has none.
RouteAnswer defaultRoute();

// Whether a network device belongs to the cellular network, by its type or name.
bool isCellular(int device);

}  // namespace platform
