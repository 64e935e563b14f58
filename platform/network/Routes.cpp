#include "platform/network/Routes.h"

#include <libmnl/libmnl.h>
#include <linux/if_arp.h>
#include <linux/rtnetlink.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <limits>
#include <optional>
#include <string>

#include "platform/desktop/RegularFile.h"
#include "platform/network/Netlink.h"

namespace platform {

namespace {

constexpr unsigned deadHop = RTNH_F_DEAD | RTNH_F_LINKDOWN;

// Builds a netlink request.
class Request {
public:
    Request(std::uint16_t type, std::uint16_t flags) : header_(mnl_nlmsg_put_header(buffer_.data())) {
        header_->nlmsg_type = type;
        header_->nlmsg_flags = NLM_F_REQUEST | flags;
        header_->nlmsg_seq = 1;
    }

    template <typename Header>
    Header& add() {
        return *static_cast<Header*>(mnl_nlmsg_put_extra_header(header_, sizeof(Header)));
    }
    nlmsghdr& header() { return *header_; }

private:
    alignas(nlmsghdr) std::array<char, 256> buffer_{};
    nlmsghdr* header_;
};

using Attributes = std::array<const nlattr*, RTA_MAX + 1>;

int keepAttribute(const nlattr* attribute, void* attributes) {
    const std::uint16_t type = mnl_attr_get_type(attribute);
    if (type <= RTA_MAX) (*static_cast<Attributes*>(attributes))[type] = attribute;
    return MNL_CB_OK;
}

std::uint32_t number(const nlattr* attribute, std::uint32_t otherwise) {
    return attribute ? mnl_attr_get_u32(attribute) : otherwise;
}

// Takes the first next hop whose link is up; false when there is none.
bool takeWorkingHop(const nlattr& hops, Route& route) {
    const auto* hop = static_cast<const rtnexthop*>(mnl_attr_get_payload(&hops));
    int length = mnl_attr_get_payload_len(&hops);
    for (; RTNH_OK(hop, length); length -= RTNH_ALIGN(hop->rtnh_len), hop = RTNH_NEXT(hop)) {
        if (hop->rtnh_flags & deadHop) continue;
        Attributes attributes{};
        mnl_attr_parse_payload(RTNH_DATA(hop), hop->rtnh_len - sizeof(*hop), keepAttribute, &attributes);
        route.device = hop->rtnh_ifindex;
        route.hasGateway = attributes[RTA_GATEWAY] || attributes[RTA_VIA];
        return true;
    }
    return false;
}

struct RankedRoute {
    Route route;
    std::uint64_t rank = 0;  // lower is preferred: IPv4 before IPv6, then the metric
};

// Nothing for routes that reject packets and for routes over links that are down.
std::optional<RankedRoute> readRoute(const nlmsghdr& message) {
    if (message.nlmsg_type != RTM_NEWROUTE) return {};
    const auto& header = *static_cast<const rtmsg*>(mnl_nlmsg_get_payload(&message));
    constexpr std::array leading = {RTN_UNICAST, RTN_LOCAL, RTN_BROADCAST, RTN_ANYCAST, RTN_MULTICAST};
    if (std::find(leading.begin(), leading.end(), header.rtm_type) == leading.end()) return {};
    Attributes attributes{};
    mnl_attr_parse(&message, sizeof(rtmsg), keepAttribute, &attributes);
    RankedRoute ranked{{.prefixLength = header.rtm_dst_len}};
    if (attributes[RTA_MULTIPATH]) {
        if (!takeWorkingHop(*attributes[RTA_MULTIPATH], ranked.route)) return {};
    } else {
        if (header.rtm_flags & deadHop) return {};
        ranked.route.device = static_cast<int>(number(attributes[RTA_OIF], 0));
        ranked.route.hasGateway = attributes[RTA_GATEWAY] || attributes[RTA_VIA];
    }
    const std::uint64_t family = header.rtm_family == AF_INET ? 0 : 1;
    ranked.rank = family << 32 | number(attributes[RTA_PRIORITY], 0);
    return ranked;
}

// Whether the kernel's error means that there is no route, or that a route rejects packets.
bool meansNoRoute(int error) {
    constexpr std::array errors = {ENETUNREACH, EHOSTUNREACH, EACCES, EINVAL, ENETDOWN};
    return std::find(errors.begin(), errors.end(), error) != errors.end();
}

// The accepted route of lowest rank.
template <typename Accepts>
RouteAnswer ask(Request& request, Accepts accepts) {
    using enum RouteAnswer::Kind;
    std::optional<RankedRoute> best;
    int error = EINTR;
    for (int tries = 0; error == EINTR && tries < 3; ++tries) {  // EINTR: the table changed during the dump
        best.reset();
        error = askNetlink(request.header(), [&](const nlmsghdr& message) {
            const auto found = readRoute(message);
            if (found && accepts(found->route) && (!best || found->rank < best->rank)) best = found;
        });
    }
    if (error != 0 && !meansNoRoute(error)) return {unknown};
    return best ? RouteAnswer{route, best->route} : RouteAnswer{noRoute};
}

}  // namespace

RouteAnswer routeTo(const HostAddress& address) {
    // The reply is a single message without NLMSG_DONE; the acknowledgement marks its end.
    Request request(RTM_GETROUTE, NLM_F_ACK);
    auto& header = request.add<rtmsg>();
    header.rtm_flags = RTM_F_FIB_MATCH;  // return the table entry, not only the resolved path
    header.rtm_family = address.isIPv4() ? AF_INET : AF_INET6;
    header.rtm_dst_len = static_cast<unsigned char>(address.size() * 8);
    mnl_attr_put(&request.header(), RTA_DST, address.size(), address.bytes());
    return ask(request, [](const Route&) { return true; });
}

RouteAnswer defaultRoute() {
    Request request(RTM_GETROUTE, NLM_F_DUMP);
    request.add<rtmsg>().rtm_family = AF_UNSPEC;
    return ask(request, [](const Route& route) { return route.prefixLength == 0; });
}

bool isCellular(int device) {
    Request request(RTM_GETLINK, NLM_F_ACK);
    request.add<ifinfomsg>().ifi_index = device;
    std::string name;
    unsigned type = 0;
    askNetlink(request.header(), [&](const nlmsghdr& message) {
        if (message.nlmsg_type != RTM_NEWLINK) return;
        type = static_cast<const ifinfomsg*>(mnl_nlmsg_get_payload(&message))->ifi_type;
        Attributes attributes{};
        mnl_attr_parse(&message, sizeof(ifinfomsg), keepAttribute, &attributes);
        if (attributes[IFLA_IFNAME]) name = mnl_attr_get_str(attributes[IFLA_IFNAME]);
    });
    if (type == ARPHRD_PPP || type == ARPHRD_RAWIP) return true;
    for (const char* prefix : {"wwan", "rmnet", "ppp"})
        if (name.starts_with(prefix)) return true;
    const auto description = readRegularFile("/sys/class/net/" + name + "/uevent", 1 << 16);
    return description && description->contains("DEVTYPE=wwan\n");
}

}  // namespace platform
