#include "engine/HostPattern.h"

#include <algorithm>
#include <utility>

#include "store/plist/XmlText.h"
#include "store/text/Ascii.h"

namespace engine {

namespace {

// Without ":" and digits at its end.
std::string_view withoutPort(std::string_view text) {
    std::size_t size = text.size();
    while (size > 0 && text[size - 1] >= '0' && text[size - 1] <= '9') --size;
    return size > 0 && text[size - 1] == ':' ? text.substr(0, size - 1) : text;
}

// Whether a name ends in another one, at a dot.
bool isBelow(std::string_view name, std::string_view parent) {
    return name.size() > parent.size() && name.ends_with(parent) && name[name.size() - parent.size() - 1] == '.';
}

}  // namespace

std::optional<Destination> parseDestination(std::string_view text) {
    const auto parts = splitPort(text);
    auto host = parts ? parseHost(parts->host) : std::nullopt;
    if (!host) return {};
    Destination destination;
    (host->kind == Host::Kind::name ? destination.name : destination.address) = std::move(host->text);
    destination.port = parts->port;
    return destination;
}

std::optional<HostPattern> HostPattern::parse(std::string_view rule) {
    std::string_view text = store::trimmed(rule);
    HostPattern pattern;
    if (text.starts_with('*')) {
        text.remove_prefix(1);
        pattern.scope_ = Scope::hostAndBelow;
    }
    const auto parts = splitPort(text);
    if (!parts) return {};
    pattern.port_ = parts->port;
    text = parts->host;
    if (text.empty() && pattern.scope_ == Scope::hostAndBelow) {
        pattern.scope_ = Scope::everything;
        return pattern;
    }
    if (text.starts_with('.') && pattern.scope_ == Scope::hostAndBelow) {
        text.remove_prefix(1);
        pattern.scope_ = Scope::below;
    }
    auto host = parseHost(text);
    if (!host) return {};
    pattern.host_ = *std::move(host);
    if (pattern.host_.kind == Host::Kind::address) pattern.scope_ = Scope::host;  // nothing lies below an address
    return pattern;
}

// From the end of both names, where they differ soon. A label in ASCII stays as it is in the ASCII form, whatever
// others become.
bool HostPattern::mayMatchHost(std::string_view rule, const Destination& destination) {
    std::string_view host = store::trimmed(rule);
    if (host.starts_with('*')) host.remove_prefix(1);
    if (host.starts_with('.')) host.remove_prefix(1);
    if (!destination.address.empty() && (mayBeAddress(host) || !store::isAscii(host))) return true;
    host = withoutPort(host);
    if (host.ends_with('.')) host.remove_suffix(1);
    const std::string_view name = destination.name;
    const std::size_t shorter = std::min(host.size(), name.size());
    std::size_t same = 0;  // bytes at the end
    while (same < shorter && store::asciiLower(host[host.size() - 1 - same]) == name[name.size() - 1 - same]) ++same;
    if (same == host.size()) return true;
    std::string_view label = host.substr(0, host.size() - same);
    label = label.substr(label.rfind('.') + 1);
    return std::ranges::any_of(label, [](char c) { return static_cast<signed char>(c) < 0; });
}

bool HostPattern::matches(const Destination& destination) const {
    return (port_ == 0 || port_ == destination.port) && matchesHost(destination);
}

bool HostPattern::matchesHost(const Destination& destination) const {
    if (scope_ == Scope::everything) return true;
    if (host_.kind == Host::Kind::address) return host_.text == destination.address;
    const bool isItself = scope_ != Scope::below && destination.name == host_.text;
    return isItself || (scope_ != Scope::host && isBelow(destination.name, host_.text));
}

Closeness HostPattern::closeness() const {
    const bool isWhole = scope_ == Scope::host;
    return {isWhole, isWhole ? 0 : host_.text.size() + (scope_ == Scope::below ? 1 : 0), port_ != 0};
}

}  // namespace engine
