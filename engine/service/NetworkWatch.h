#pragma once

#include "platform/network/Netlink.h"

namespace engine {

// Whether the machine's connections go over Wi-Fi, in the sense of the switches: anything but the cellular network. A
// cable counts as Wi-Fi, and so does no network at all.
bool isOnWiFi();

// Tells when that may have changed: the descriptor becomes readable (rtnetlink). One thread.
class NetworkWatch {
public:
    NetworkWatch();

    // -1 where the kernel does not tell.
    int descriptor() const;
    // Takes what has come. Call when the descriptor is readable.
    void drain();

private:
    platform::NetlinkSocket socket_;
};

}  // namespace engine
