#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace store {

// One character of UTF-8; length 0 stands for bytes that are none (overlong forms and surrogates included).
struct Utf8Character {
    char32_t character = 0;
    unsigned length = 0;
};

Utf8Character decodeUtf8(const char* p, const char* end);
void appendUtf8(std::string& text, char32_t character);

enum class ByteOrder { little, big };

// UTF-8 of UTF-16 bytes. Where they are malformed (a lone surrogate, half a unit at the end), nothing, and
// `malformedAt` is the byte where that is.
std::optional<std::string> utf8FromUtf16(std::string_view bytes, ByteOrder order, std::size_t& malformedAt);

// Whether XML can carry the character.
constexpr bool isXmlCharacter(char32_t c) {
    if (c < 0x20) return c == '\t' || c == '\n' || c == '\r';
    return c < 0xD800 || (c > 0xDFFF && c != 0xFFFE && c != 0xFFFF && c <= 0x10FFFF);
}

}  // namespace store
