#include "platform/network/HostAddress.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <cstring>

namespace platform {

HostAddress::HostAddress(const QString& text) {
    const QByteArray plain = text.toUtf8();
    in_addr ipv4;
    in6_addr ipv6;
    if (inet_pton(AF_INET, plain.constData(), &ipv4) == 1)
        set(&ipv4, ipv4Size);
    else if (inet_pton(AF_INET6, plain.constData(), &ipv6) == 1)
        set(&ipv6, ipv6Size);
}

HostAddress::HostAddress(const sockaddr& address) {
    if (address.sa_family == AF_INET)
        set(&reinterpret_cast<const sockaddr_in&>(address).sin_addr, ipv4Size);
    else if (address.sa_family == AF_INET6)
        set(&reinterpret_cast<const sockaddr_in6&>(address).sin6_addr, ipv6Size);
}

void HostAddress::set(const void* bytes, std::uint16_t size) {
    std::memcpy(bytes_.data(), bytes, size);
    size_ = size;
}

bool HostAddress::isLinkLocal() const {
    if (isIPv4()) return bytes_[0] == 169 && bytes_[1] == 254;
    return bytes_[0] == 0xFE && (bytes_[1] & 0xC0) == 0x80;
}

}  // namespace platform
