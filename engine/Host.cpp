#include "engine/Host.h"

#include <arpa/inet.h>
#include <unicode/uidna.h>

#include <array>
#include <charconv>
#include <memory>

#include "store/text/Ascii.h"

namespace engine {

namespace {

constexpr std::size_t longestName = 253;  // RFC 1035, without a dot at its end
constexpr std::size_t longestLabel = 63;

std::string_view withoutBrackets(std::string_view text) {
    return text.size() > 2 && text.front() == '[' && text.back() == ']' ? text.substr(1, text.size() - 2) : text;
}

std::string written(int family, const void* bytes) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    inet_ntop(family, bytes, text.data(), text.size());
    return text.data();
}

std::optional<std::string> address(std::string_view text) {
    if (!mayBeAddress(text)) return {};
    text = withoutBrackets(text.substr(0, text.find('%')));
    std::array<char, INET6_ADDRSTRLEN> plain{};
    if (text.size() >= plain.size() || text.find('\0') != std::string_view::npos) return {};
    text.copy(plain.data(), text.size());
    in_addr ipv4{};
    if (inet_pton(AF_INET, plain.data(), &ipv4) == 1) return written(AF_INET, &ipv4);
    in6_addr ipv6{};
    if (inet_pton(AF_INET6, plain.data(), &ipv6) != 1) return {};
    if (!IN6_IS_ADDR_V4MAPPED(&ipv6)) return written(AF_INET6, &ipv6);
    constexpr std::size_t prefixSize = 12;  // bytes before the IPv4 address
    return written(AF_INET, ipv6.s6_addr + prefixSize);
}

// The lower case of the characters that names consist of, 0 for all others.
constexpr std::array<char, 256> nameCharacters = [] {
    std::array<char, 256> characters{};
    for (const char c : std::string_view("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_."))
        characters[static_cast<unsigned char>(c)] = store::asciiLower(c);
    return characters;
}();

std::optional<std::string> asciiName(std::string_view text) {
    if (text.ends_with('.')) text.remove_suffix(1);
    if (text.size() > longestName) return {};
    std::string name(text);
    std::size_t labelSize = 0;
    for (char& c : name) {
        c = nameCharacters[static_cast<unsigned char>(c)];
        if (c == '\0' || (c == '.' && labelSize == 0)) return {};
        labelSize = c == '.' ? 0 : labelSize + 1;
        if (labelSize > longestLabel) return {};
    }
    if (labelSize == 0) return {};
    return name;
}

// The form that the domain name system knows; empty when there is none.
std::string asciiForm(std::string_view name) {
    // Immutable, and so for every thread.
    static const std::unique_ptr<UIDNA, decltype(&uidna_close)> idna = [] {
        UErrorCode status = U_ZERO_ERROR;
        return std::unique_ptr<UIDNA, decltype(&uidna_close)>(uidna_openUTS46(UIDNA_NONTRANSITIONAL_TO_ASCII, &status),
                                                              uidna_close);
    }();
    constexpr std::size_t mostBytes = 4;  // of UTF-8 for a character, which has at least one in the ASCII form
    if (!idna || name.size() > mostBytes * longestName) return {};
    std::array<char, longestName + 1> text{};
    UIDNAInfo info = UIDNA_INFO_INITIALIZER;
    UErrorCode status = U_ZERO_ERROR;
    const int32_t size = uidna_nameToASCII_UTF8(idna.get(), name.data(), static_cast<int32_t>(name.size()), text.data(),
                                                static_cast<int32_t>(text.size()), &info, &status);
    return U_SUCCESS(status) ? std::string(text.data(), static_cast<std::size_t>(size)) : std::string();
}

std::optional<std::string> name(std::string_view text) {
    return store::isAscii(text) ? asciiName(text) : asciiName(asciiForm(text));
}

std::optional<std::uint16_t> port(std::string_view digits) {
    std::uint16_t number = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    if (error != std::errc() || stop != end || number == 0) return {};
    return number;
}

}  // namespace

bool mayBeAddress(std::string_view text) {
    const char first = text.empty() ? '\0' : text.front();
    return (first >= '0' && first <= '9') || first == '[' || text.find(':') != std::string_view::npos;
}

std::optional<Host> parseHost(std::string_view text) {
    if (auto found = address(text)) return Host{Host::Kind::address, *std::move(found)};
    auto found = name(text);
    if (!found) return {};
    // A dot at its end, or digits that are none of ASCII's, may have hidden an address.
    const bool isAddress = *found != text && address(*found);
    return Host{isAddress ? Host::Kind::address : Host::Kind::name, *std::move(found)};
}

std::optional<HostAndPort> splitPort(std::string_view text) {
    const std::size_t colon = text.starts_with('[') ? text.find("]:") : text.find(':');
    if (colon == std::string_view::npos) return HostAndPort{text};
    const bool isBracketed = text[colon] == ']';
    if (!isBracketed && text.find(':', colon + 1) != std::string_view::npos) return HostAndPort{text};
    const auto number = port(text.substr(colon + (isBracketed ? 2 : 1)));
    if (!number) return {};
    return HostAndPort{text.substr(0, colon + (isBracketed ? 1 : 0)), *number};
}

}  // namespace engine
