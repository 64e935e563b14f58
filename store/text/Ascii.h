#pragma once

namespace store {

// The lower case of an ASCII letter; any other byte unchanged.
constexpr char asciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}

}  // namespace store
