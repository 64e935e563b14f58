#include "benchmarks/Options.h"

#include <charconv>
#include <optional>

namespace bench {

namespace {

// Below this there is nothing to measure, and the rows that compare with fewer rules would have none.
constexpr std::size_t smallestSize = 1000;
constexpr std::size_t largestSize = 10'000'000;

std::optional<std::size_t> size(const std::string& text) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = error == std::errc() && end == text.data() + text.size();
    if (!isNumber || number < smallestSize || number > largestSize) return std::nullopt;
    return number;
}

}  // namespace

std::variant<Options, Misuse> parseArguments(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        const std::string& argument = arguments[at];
        if (argument == "--size") {
            const auto number = ++at < arguments.size() ? size(arguments[at]) : std::nullopt;
            if (!number) return Misuse{"--size takes a number of rules from 1000 to 10000000"};
            options.size = *number;
        } else if (argument.starts_with('-')) {
            return Misuse{"unknown argument " + argument + " (usage: ./bench [NAME] [--size N])"};
        } else if (!options.subject.empty()) {
            return Misuse{"one name at a time, not " + options.subject + " and " + argument};
        } else {
            options.subject = argument;
        }
    }
    return options;
}

}  // namespace bench
