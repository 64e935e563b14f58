#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

struct mnl_socket;
struct nlmsghdr;

namespace platform {

// An rtnetlink socket, closed by its owner.
struct CloseNetlink {
    void operator()(mnl_socket* socket) const;
};
using NetlinkSocket = std::unique_ptr<mnl_socket, CloseNetlink>;

// Opens a socket and joins the multicast groups of the bit mask (0 for requests only). Null on failure.
NetlinkSocket openNetlink(unsigned groups);

// Sends the request and passes every message of the reply to `receive`. Blocks. Returns 0 or an errno value.
int askNetlink(nlmsghdr& request, const std::function<void(const nlmsghdr&)>& receive);

}  // namespace platform
