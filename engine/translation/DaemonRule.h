#pragma once

#include <optional>
#include <string>
#include <vector>

namespace engine {

// A rule of the daemon opensnitchd (1.5.8). It tries its rules in the order of the bytes of their names: one that
// denies ends the search, and so does one that allows with precedence; one that allows without precedence holds if no
// later one denies.

struct Condition {
    enum class Type { simple, regexp };  // regexp: RE2, found anywhere in the operand
    Type type = Type::simple;
    std::string operand;  // "process.path", "dest.host", ...
    std::string data;
    bool isCaseSensitive = false;  // otherwise operand and data are compared in lower case

    bool operator==(const Condition&) const = default;
};

// Hosts that the daemon reads from a file into a hash table: for more of them than an expression should hold. It looks
// for a change of the file every 4 s.
struct HostFile {
    enum class Kind { names, addresses };
    Kind kind = Kind::names;
    std::vector<std::string> hosts;  // sorted, without repeats

    bool operator==(const HostFile&) const = default;
};

struct DaemonRule {
    enum class Action { deny, allow, pass };  // allow with precedence, pass without

    std::string name;  // also its file's, without ".json"
    Action action = Action::deny;
    std::vector<Condition> conditions;  // all must hold; none: every connection
    std::optional<HostFile> hosts;      // one more condition

    bool operator==(const DaemonRule&) const = default;
};

// The rule as the daemon reads it (JSON). `hostFolder` is the folder in which the file of `hosts` is the only one. Any
// thread.
std::string jsonOf(const DaemonRule& rule, const std::string& hostFolder);

// Twelve hexadecimal digits of the SHA-256 of all but the file of hosts. Any thread.
std::string digestOf(const DaemonRule& rule);

}  // namespace engine
