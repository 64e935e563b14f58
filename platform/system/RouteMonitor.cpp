#include "platform/system/RouteMonitor.h"

#include <libmnl/libmnl.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <utility>

namespace platform {

RouteMonitor::RouteMonitor(std::function<void()> changed)
    : changed_(std::move(changed)), socket_(openNetlink(RTMGRP_LINK | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE)) {
    if (!socket_) return;
    notifier_ = std::make_unique<QSocketNotifier>(mnl_socket_get_fd(socket_.get()), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { readChanges(); });
}

RouteMonitor::~RouteMonitor() = default;

// The messages are not parsed: clients query the routes anew. ENOBUFS, a lost batch of messages, counts as a change.
void RouteMonitor::readChanges() {
    std::array<char, 16> start;  // the rest of a message is discarded
    bool hasChanged = false;
    for (;;) {
        const ssize_t length = ::recv(mnl_socket_get_fd(socket_.get()), start.data(), start.size(), MSG_DONTWAIT);
        if (length < 0 && errno != EINTR && errno != ENOBUFS) break;
        hasChanged = true;
    }
    if (hasChanged) changed_();
}

}  // namespace platform
