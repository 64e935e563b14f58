#pragma once

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

namespace bench {

struct Options {
    std::string subject;  // empty for all of them
    std::size_t size = 1'000'000;
};

struct Misuse {
    std::string reason;
};

// `arguments` without the program's name. Whether there is such a subject is for others to say.
std::variant<Options, Misuse> parseArguments(const std::vector<std::string>& arguments);

}  // namespace bench
