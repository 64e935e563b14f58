#pragma once

#include <string_view>

#include "store/text/Bytes16.h"

namespace store {

// The lower case of an ASCII letter; any other byte unchanged.
constexpr char asciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}

inline bool isAscii(std::string_view text) {
    return findByte(text, [](Bytes16 bytes) { return bytes < 0; }) == text.size();
}

}  // namespace store
