#include "engine/list/LineForms.h"

#include <algorithm>
#include <array>

#include "engine/Host.h"

namespace engine {

namespace {

constexpr auto none = std::string_view::npos;

template <std::size_t size>
bool contains(const std::array<std::string_view, size>& words, std::string_view word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

// The offset of the first character for which the function holds, the text's size when there is none.
template <class Function>
std::size_t firstOf(std::string_view text, Function function) {
    return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), function) - text.begin());
}

bool isAddress(std::string_view text) {
    const auto host = parseHost(text);
    return host && host->kind == Host::Kind::address;
}

bool isUnspecifiedOrLoopback(std::string_view address) {
    return address == "0.0.0.0" || address == "::" || address == "::1" || address.starts_with("127.");
}

}  // namespace

std::string_view withoutBlanks(std::string_view text) {
    const auto isAround = [](char c) { return isBlank(c) || c == '\r'; };
    while (!text.empty() && isAround(text.front())) text.remove_prefix(1);
    while (!text.empty() && isAround(text.back())) text.remove_suffix(1);
    return text;
}

std::string_view takeWord(std::string_view& text) {
    const std::string_view word = text.substr(0, firstOf(text, isBlank));
    text.remove_prefix(word.size());
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    return word;
}

bool isFilterListHeader(std::string_view line) {
    return line.starts_with('[') && line.ends_with(']') && !isAddress(line);
}

bool isCosmeticSeparator(std::string_view text) {
    const std::size_t end = text.find_first_not_of("@?$%", 1);
    return end != none && text[end] == '#';
}

std::string_view withoutComment(std::string_view line) {
    std::size_t at = line.find('#');
    while (at != none && at > 0 && !isBlank(line[at - 1])) at = line.find('#', at + 1);
    return withoutBlanks(line.substr(0, at));
}

std::optional<HostFilter> parseHostFilter(std::string_view text) {
    // What may stand behind a host without saying more than that it has ended.
    static constexpr std::array<std::string_view, 7> ends{"", "^", "^|", "|", "/", "/*", "^*"};
    const std::size_t dollar = text.find('$');
    const std::string_view pattern = text.substr(0, dollar);
    const bool isBelow = pattern.starts_with("*.");
    const auto endsHost = [](char c) { return c == '^' || c == '|' || c == '/' || c == '*' || c == '?'; };
    const std::size_t end = isBelow ? 1 + firstOf(pattern.substr(1), endsHost) : firstOf(pattern, endsHost);
    const std::string_view host = pattern.substr(0, end);
    if (!contains(ends, pattern.substr(end)) || host.ends_with('.')) return {};
    return HostFilter{host, dollar == none ? std::string_view() : text.substr(dollar + 1)};
}

bool areNarrowing(std::string_view options) {
    static constexpr std::array<std::string_view, 7> wide{"third-party", "3p",  "document", "doc",
                                                          "popup",       "all", "important"};
    while (!options.empty()) {
        const std::size_t comma = std::min(options.find(','), options.size());
        if (!contains(wide, withoutBlanks(options.substr(0, comma)))) return true;
        options.remove_prefix(std::min(comma + 1, options.size()));
    }
    return false;
}

std::optional<DnsmasqLine> parseDnsmasqLine(std::string_view line) {
    static constexpr std::array<std::string_view, 3> keywords{"address", "local", "server"};
    const auto isStart = [](std::string_view word, char c) { return word.front() == c; };
    if (line.empty() ||
        std::none_of(keywords.begin(), keywords.end(), [&](auto word) { return isStart(word, line[0]); }))
        return {};
    const std::size_t equals = line.find('=');
    if (equals == none) return {};
    const std::string_view keyword = withoutBlanks(line.substr(0, equals));
    const std::string_view value = withoutBlanks(line.substr(equals + 1));
    const std::size_t last = value.rfind('/');
    if (!contains(keywords, keyword) || !value.starts_with('/') || last == 0) return {};
    return DnsmasqLine{value.substr(1, last - 1), value.substr(last + 1), keyword != "address"};
}

std::optional<Target> targetOf(std::string_view text) {
    if (text == "0") return Target::nowhere;
    const auto host = parseHost(text);
    if (!host || host->kind != Host::Kind::address) return {};
    return isUnspecifiedOrLoopback(host->text) ? Target::nowhere : Target::elsewhere;
}

bool isOwnName(std::string_view host) {
    static constexpr std::array<std::string_view, 9> names{
        "localhost",      "localhost.localdomain",   "localhost4", "localhost4.localdomain4",
        "localhost6",     "localhost6.localdomain6", "local",      "broadcasthost",
        "255.255.255.255"};
    return contains(names, host) || host.starts_with("ip6-") || isUnspecifiedOrLoopback(host);
}

}  // namespace engine
