#include "store/text/Utf.h"

#include <cstddef>

namespace store {

Utf8Character decodeUtf8(const char* p, const char* end) {
    auto byte = [&](unsigned i) { return static_cast<unsigned char>(p[i]); };
    auto follows = [&](unsigned count) {
        if (end - p <= static_cast<std::ptrdiff_t>(count)) return false;
        for (unsigned i = 1; i <= count; ++i)
            if ((byte(i) & 0xC0) != 0x80) return false;
        return true;
    };
    if (p == end) return {};
    char32_t lead = byte(0);
    if (lead < 0x80) return {lead, 1};
    if (lead >= 0xC2 && lead < 0xE0 && follows(1)) return {(lead & 0x1F) << 6 | (byte(1) & 0x3Fu), 2};
    if (lead >= 0xE0 && lead < 0xF0 && follows(2)) {
        char32_t c = (lead & 0x0F) << 12 | (byte(1) & 0x3Fu) << 6 | (byte(2) & 0x3Fu);
        if (c >= 0x800 && (c < 0xD800 || c > 0xDFFF)) return {c, 3};
    }
    if (lead >= 0xF0 && lead < 0xF5 && follows(3)) {
        char32_t c = (lead & 0x07) << 18 | (byte(1) & 0x3Fu) << 12 | (byte(2) & 0x3Fu) << 6 | (byte(3) & 0x3Fu);
        if (c >= 0x10000 && c <= 0x10FFFF) return {c, 4};
    }
    return {};
}

void appendUtf8(std::string& text, char32_t c) {
    auto append = [&](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (c < 0x80) {
        append(c);
    } else if (c < 0x800) {
        append(0xC0 | c >> 6);
        append(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        append(0xE0 | c >> 12);
        append(0x80 | (c >> 6 & 0x3F));
        append(0x80 | (c & 0x3F));
    } else {
        append(0xF0 | c >> 18);
        append(0x80 | (c >> 12 & 0x3F));
        append(0x80 | (c >> 6 & 0x3F));
        append(0x80 | (c & 0x3F));
    }
}

std::optional<std::string> utf8FromUtf16(std::string_view bytes, ByteOrder order, std::size_t& malformedAt) {
    auto unit = [&](std::size_t i) -> char32_t {
        auto first = static_cast<unsigned char>(bytes[i]);
        auto second = static_cast<unsigned char>(bytes[i + 1]);
        return order == ByteOrder::big ? first << 8 | second : second << 8 | first;
    };
    std::string text;
    text.reserve(bytes.size() / 2 * 3);
    std::size_t i = 0;
    while (i + 1 < bytes.size()) {
        char32_t c = unit(i);
        std::size_t length = 2;
        if (c >= 0xD800 && c <= 0xDFFF) {
            char32_t low = c < 0xDC00 && i + 3 < bytes.size() ? unit(i + 2) : 0;
            if (low < 0xDC00 || low > 0xDFFF) break;
            c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
            length = 4;
        }
        appendUtf8(text, c);
        i += length;
    }
    if (i == bytes.size()) return text;
    malformedAt = i;
    return std::nullopt;
}

}  // namespace store
