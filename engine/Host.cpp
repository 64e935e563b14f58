#include "engine/Host.h"

#include <arpa/inet.h>
#include <unicode/uidna.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <memory>

#include "store/text/Ascii.h"
#include "store/text/IcuText.h"

namespace engine {

namespace {

std::string_view withoutBrackets(std::string_view text) {
    return text.size() > 2 && text.front() == '[' && text.back() == ']' ? text.substr(1, text.size() - 2) : text;
}

std::string written(int family, const void* bytes) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    inet_ntop(family, bytes, text.data(), text.size());
    return text.data();
}

std::optional<std::string> address(std::string_view text) {
    const std::string plain(withoutBrackets(text.substr(0, text.find('%'))));
    in_addr ipv4{};
    if (inet_pton(AF_INET, plain.c_str(), &ipv4) == 1) return written(AF_INET, &ipv4);
    in6_addr ipv6{};
    if (inet_pton(AF_INET6, plain.c_str(), &ipv6) != 1) return {};
    if (!IN6_IS_ADDR_V4MAPPED(&ipv6)) return written(AF_INET6, &ipv6);
    constexpr std::size_t prefixSize = 12;  // bytes before the IPv4 address
    return written(AF_INET, ipv6.s6_addr + prefixSize);
}

bool isOfName(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.';
}

std::string asciiForm(std::string_view name) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UIDNA, decltype(&uidna_close)> idna(uidna_openUTS46(UIDNA_DEFAULT, &status), uidna_close);
    if (U_FAILURE(status)) return {};
    const std::u16string text = store::utf16(name);
    UIDNAInfo info = UIDNA_INFO_INITIALIZER;
    return store::utf8(store::fromIcu(2 * text.size(), [&](char16_t* to, std::size_t capacity, UErrorCode* error) {
        return uidna_nameToASCII(idna.get(), text.data(), static_cast<int32_t>(text.size()), to,
                                 static_cast<int32_t>(capacity), &info, error);
    }));
}

std::optional<std::string> name(std::string_view text) {
    if (text.ends_with('.')) text.remove_suffix(1);
    std::string lowered(store::isAscii(text) ? std::string(text) : asciiForm(text));
    std::transform(lowered.begin(), lowered.end(), lowered.begin(), store::asciiLower);
    const bool hasEmptyLabel = lowered.starts_with('.') || lowered.find("..") != std::string::npos;
    if (lowered.empty() || hasEmptyLabel || !std::all_of(lowered.begin(), lowered.end(), isOfName)) return {};
    return lowered;
}

std::optional<std::uint16_t> port(std::string_view digits) {
    std::uint16_t number = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    if (error != std::errc() || stop != end || number == 0) return {};
    return number;
}

}  // namespace

std::optional<Host> parseHost(std::string_view text) {
    if (auto found = address(text)) return Host{Host::Kind::address, *std::move(found)};
    if (auto found = name(text)) return Host{Host::Kind::name, *std::move(found)};
    return {};
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
