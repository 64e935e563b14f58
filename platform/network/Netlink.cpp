#include "platform/network/Netlink.h"

#include <fcntl.h>
#include <libmnl/libmnl.h>

#include <array>
#include <cerrno>

namespace platform {

namespace {

int handAnswer(const nlmsghdr* message, void* receive) {
    (*static_cast<const std::function<void(const nlmsghdr&)>*>(receive))(*message);
    return MNL_CB_OK;
}

}  // namespace

void CloseNetlink::operator()(mnl_socket* socket) const {
    mnl_socket_close(socket);
}

NetlinkSocket openNetlink(unsigned groups) {
    NetlinkSocket socket(mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC));
    if (socket && mnl_socket_bind(socket.get(), groups, MNL_SOCKET_AUTOPID) != 0) socket.reset();
    return socket;
}

int askNetlink(nlmsghdr& request, const std::function<void(const nlmsghdr&)>& receive) {
    const NetlinkSocket socket = openNetlink(0);
    if (!socket || mnl_socket_sendto(socket.get(), &request, request.nlmsg_len) < 0) return errno;
    const unsigned port = mnl_socket_get_portid(socket.get());
    std::array<char, 32 * 1024> buffer;  // the kernel's largest message of a dump
    int outcome = MNL_CB_OK;
    while (outcome > MNL_CB_STOP) {
        const ssize_t length = mnl_socket_recvfrom(socket.get(), buffer.data(), buffer.size());
        if (length < 0) return errno;
        outcome = mnl_cb_run(buffer.data(), length, request.nlmsg_seq, port, handAnswer,
                             const_cast<void*>(static_cast<const void*>(&receive)));
    }
    return outcome == MNL_CB_STOP ? 0 : errno;
}

}  // namespace platform
