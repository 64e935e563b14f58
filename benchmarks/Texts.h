#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

// What host lists are made of, the same every time: names of hosts with and without a leading asterisk or a port, IPv4
// and IPv6 addresses, some capitals, some names beyond ASCII. No two are equal.
std::vector<std::string> hosts(std::size_t count);

// Names as people write them: accents on every other Latin letter, Han, kana and Hangul. No two are equal.
std::vector<std::string> names(std::size_t count);

}  // namespace bench
