#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace engine {

// Why a part of a list is left out.
enum class Omission {
    exception,  // "@@": a filter that lets through what others stop
    cosmetic,   // a filter that hides parts of pages
    option,     // a filter with options that leave a part of the host reachable
    pattern,    // paths, text with placeholders: no host as a whole
    elsewhere,  // a host that is sent to another address, or asked for at another server, and so is not blocked
    ownName,    // what the machine calls itself
    noHost      // anything else
};
inline constexpr std::size_t omissionCount = static_cast<std::size_t>(Omission::noHost) + 1;

// The hosts of a published list as the app imports them.
struct HostList {
    struct Omitted {
        std::size_t count = 0;
        std::size_t firstLine = 0;  // from 1
    };
    std::string text;  // an entry a line in HostPattern's form, in the list's order; no line feed behind the last
    std::size_t taken = 0;
    std::size_t repeated = 0;
    std::array<Omitted, omissionCount> omitted{};  // by Omission

    const Omitted& of(Omission reason) const { return omitted[static_cast<std::size_t>(reason)]; }
};

// Reads a list in any of the forms that lists are published in, mixed or not; docs/lists.md says what becomes of each
// line. UTF-8, or UTF-16 with a byte-order mark; nothing when that is malformed. What blocks a host alone becomes
// "host", what blocks all below it as well "*host". Comments and empty lines count nowhere.
//
// One pass. What was read, the result and what it takes to find repeated entries stay below eight times the memory of
// the input alone. A pure function, any thread.
std::optional<HostList> readHostList(std::string_view bytes);

// For people: a line with what was taken, and a line for each reason to leave something out that applied.
std::string summaryOf(const HostList& list);

}  // namespace engine
