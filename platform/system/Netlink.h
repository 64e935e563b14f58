#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

struct mnl_socket;
struct nlmsghdr;

namespace platform {

// A socket of the kernel's routing service; closed with its owner.
struct CloseNetlink {
    void operator()(mnl_socket* socket) const;
};
using NetlinkSocket = std::unique_ptr<mnl_socket, CloseNetlink>;

// Joins the multicast groups, a mask; none for asking only. Null when there is no such service.
NetlinkSocket openNetlink(unsigned groups);

// Sends the request and hands every answer to `receive`. Zero, or the error number that the kernel or the socket gave.
int askNetlink(nlmsghdr& request, const std::function<void(const nlmsghdr&)>& receive);

}  // namespace platform
