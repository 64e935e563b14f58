#pragma once

#include <string>
#include <string_view>

namespace engine {

// A text as a regular expression (RE2) for itself. A pure function, any thread.
inline std::string escaped(std::string_view text) {
    std::string expression;
    for (const char c : text) {
        if (std::string_view(R"(\.+*?()|[]{}^$)").find(c) != std::string_view::npos) expression += '\\';
        expression += c;
    }
    return expression;
}

}  // namespace engine
