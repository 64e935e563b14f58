#include "store/text/Utf.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <cstddef>
#include <cstdint>

namespace store {

Utf8Character decodeUtf8(const char* p, const char* end) {
    if (p == end) return {};
    std::ptrdiff_t length = 0;
    UChar32 character = 0;
    U8_NEXT(p, length, end - p, character);
    if (character < 0) return {};
    return {static_cast<char32_t>(character), static_cast<unsigned>(length)};
}

void appendUtf8(std::string& text, char32_t c) {
    char bytes[U8_MAX_LENGTH];
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, c);
    text.append(bytes, length);
}

std::optional<std::string> utf8FromUtf16(std::string_view bytes, ByteOrder order, std::size_t& malformedAt) {
    const auto unit = [&](std::size_t i) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1]);
        return static_cast<char16_t>(order == ByteOrder::big ? first << 8 | second : second << 8 | first);
    };
    std::u16string units(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < units.size(); ++i) units[i] = unit(2 * i);
    std::string text;
    text.reserve(units.size() * 3);
    for (std::size_t next = 0; next < units.size();) {
        malformedAt = 2 * next;
        char32_t character = 0;
        U16_NEXT(units, next, units.size(), character);
        if (U_IS_SURROGATE(character)) return std::nullopt;
        appendUtf8(text, character);
    }
    malformedAt = 2 * units.size();
    if (malformedAt != bytes.size()) return std::nullopt;
    return text;
}

}  // namespace store
