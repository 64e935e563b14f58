#pragma once

#include <QString>
#include <array>
#include <cstdint>

struct sockaddr;

namespace platform {

// An IPv4 or IPv6 address, or null. QHostAddress would load QtNetwork at every start of the app.
class HostAddress {
public:
    HostAddress() = default;
    // Parses dotted IPv4 or IPv6 notation; null when the text is neither.
    explicit HostAddress(const QString& text);
    // Null for other address families.
    explicit HostAddress(const sockaddr& address);
    static HostAddress anyIPv4() { return HostAddress(QStringLiteral("0.0.0.0")); }

    bool isNull() const { return size_ == 0; }
    bool isIPv4() const { return size_ == ipv4Size; }
    // 169.254.0.0/16 and fe80::/10.
    bool isLinkLocal() const;

    // The address in network byte order, and its length in bytes: 4 or 16.
    const void* bytes() const { return bytes_.data(); }
    std::uint16_t size() const { return size_; }

    bool operator==(const HostAddress&) const = default;

private:
    static constexpr std::uint16_t ipv4Size = 4;
    static constexpr std::uint16_t ipv6Size = 16;

    void set(const void* bytes, std::uint16_t size);

    std::array<std::uint8_t, ipv6Size> bytes_{};
    std::uint16_t size_ = 0;
};

}  // namespace platform
