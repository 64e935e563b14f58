#pragma once

#include <optional>
#include <string_view>

namespace engine {

// The forms of lines that lists of hosts are published in, taken apart. Slices of the line; any thread.

constexpr bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

// Without spaces, tabs and carriage returns around it.
std::string_view withoutBlanks(std::string_view text);

// Takes the next word and the blanks behind it off the text, which does not begin with one.
std::string_view takeWord(std::string_view& text);

// "[Adblock Plus 2.0]", which opens a filter list. Not an IPv6 address in brackets.
bool isFilterListHeader(std::string_view line);

// Whether a text that begins with '#' separates the hosts of a cosmetic filter from what it hides: "##", "#@#", "#?#"
// and the like.
bool isCosmeticSeparator(std::string_view text);

// The line up to the first '#' at its beginning or behind a blank.
std::string_view withoutComment(std::string_view line);

// "||host^$options" of an adblock filter, behind its "||".
struct HostFilter {
    std::string_view host;
    std::string_view options;  // empty: none
};
// Nothing when it is about a part of a host's pages, or about text that hosts only begin with.
std::optional<HostFilter> parseHostFilter(std::string_view text);

// Whether a filter's options leave a part of the host reachable on purpose: on some pages, for some kinds of content,
// for some programs. Those that do not:
//  - "third-party": pages of others may not use the host. An app has no page, so whatever it reaches is another's.
//  - "document" and "popup": the host may not be opened, and it is its own pages that would use the rest of it.
//  - "all" and "important": more than a filter without options.
bool areNarrowing(std::string_view options);

// "address=/a.example/b.example/0.0.0.0" and "local=" and "server=" of dnsmasq.
struct DnsmasqLine {
    std::string_view names;  // separated by slashes
    std::string_view target;
    bool isServer = false;  // what is named as the target is asked for the names
};
std::optional<DnsmasqLine> parseDnsmasqLine(std::string_view line);

// Where a hosts file sends names.
enum class Target { nowhere, elsewhere };
// Nothing when the text is no address. Nowhere are the unspecified and the loopback addresses, and 0.
std::optional<Target> targetOf(std::string_view text);

// What the machine calls itself and its networks, in Host's spelling: localhost, ip6-allnodes, 0.0.0.0.
bool isOwnName(std::string_view host);

}  // namespace engine
