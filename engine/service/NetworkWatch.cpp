#include "engine/service/NetworkWatch.h"

#include <libmnl/libmnl.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>

#include "platform/network/Routes.h"

namespace engine {

bool isOnWiFi() {
    const platform::RouteAnswer answer = platform::defaultRoute();
    return answer.kind != platform::RouteAnswer::Kind::route || !platform::isCellular(answer.route.device);
}

NetworkWatch::NetworkWatch() : socket_(platform::openNetlink(RTMGRP_LINK | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE)) {}

int NetworkWatch::descriptor() const {
    return socket_ ? mnl_socket_get_fd(socket_.get()) : -1;
}

void NetworkWatch::drain() {
    std::array<char, 16> start;  // the rest of a message is discarded
    while (::recv(descriptor(), start.data(), start.size(), MSG_DONTWAIT) >= 0 || errno == EINTR || errno == ENOBUFS) {
    }
}

}  // namespace engine
