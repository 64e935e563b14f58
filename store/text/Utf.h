#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace store {

// UTF-8 and UTF-16 by the code point.

// A decoded code point and its length in bytes. Length 0: the bytes are no UTF-8 (overlong forms and surrogates
// included).
struct Utf8Character {
    char32_t character = 0;
    unsigned length = 0;
};

Utf8Character decodeUtf8(const char* p, const char* end);
void appendUtf8(std::string& text, char32_t character);

enum class ByteOrder { little, big };

// UTF-16 bytes as UTF-8. Nothing when they are malformed (a lone surrogate, half a code unit at the end); then
// `malformedAt` is the offset of the first malformed unit, in bytes.
std::optional<std::string> utf8FromUtf16(std::string_view bytes, ByteOrder order, std::size_t& malformedAt);

// Whether XML 1.0 allows the character.
constexpr bool isXmlCharacter(char32_t c) {
    if (c < 0x20) return c == '\t' || c == '\n' || c == '\r';
    return c < 0xD800 || (c > 0xDFFF && c != 0xFFFE && c != 0xFFFF && c <= 0x10FFFF);
}

}  // namespace store
