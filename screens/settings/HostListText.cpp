#include "screens/settings/HostListText.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "store/text/Utf.h"

namespace screens {

namespace {

using Decoder = std::optional<std::string> (*)(std::string_view bytes);

bool isUtf8(std::string_view bytes) {
    const char* p = bytes.data();
    const char* const end = p + bytes.size();
    while (p < end) {
        std::uint64_t eight = 0;
        if (end - p >= 8) {
            std::memcpy(&eight, p, 8);
            if ((eight & 0x8080808080808080U) == 0) {
                p += 8;
                continue;
            }
        }
        const unsigned length = store::decodeUtf8(p, end).length;
        if (length == 0) return false;
        p += length;
    }
    return true;
}

std::optional<std::string> fromUtf8(std::string_view bytes) {
    if (!isUtf8(bytes)) return std::nullopt;
    return std::string(bytes);
}

template <store::ByteOrder order>
std::optional<std::string> fromUtf16(std::string_view bytes) {
    std::size_t malformedAt = 0;
    return store::utf8FromUtf16(bytes, order, malformedAt);
}

template <store::ByteOrder order>
std::optional<std::string> fromUtf32(std::string_view bytes) {
    if (bytes.size() % 4 != 0) return std::nullopt;
    std::string text;
    text.reserve(bytes.size() / 4);
    for (; !bytes.empty(); bytes.remove_prefix(4)) {
        char32_t character = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            const std::size_t fromHighest = order == store::ByteOrder::big ? i : 3 - i;
            character = character << 8 | static_cast<unsigned char>(bytes[fromHighest]);
        }
        if (character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF)) return std::nullopt;
        store::appendUtf8(text, character);
    }
    return text;
}

// What Windows-1252 has from 0x80 to 0x9F; the five bytes that it does not use are control characters.
constexpr std::array<char16_t, 32> windowsCharacters{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                     0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                     0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                     0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::string fromWindows1252(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        const bool isSpecial = code >= 0x80 && code < 0x80 + windowsCharacters.size();
        store::appendUtf8(text, isSpecial ? windowsCharacters.at(code - 0x80U) : code);
    }
    return text;
}

struct ByteOrderMark {
    std::string_view bytes;
    Decoder decode;
};

// Longer marks before those that they begin with.
constexpr std::array marks{
    ByteOrderMark{std::string_view("\0\0\xFE\xFF", 4), fromUtf32<store::ByteOrder::big>},
    ByteOrderMark{std::string_view("\xFF\xFE\0\0", 4), fromUtf32<store::ByteOrder::little>},
    ByteOrderMark{"\xEF\xBB\xBF", fromUtf8},
    ByteOrderMark{"\xFE\xFF", fromUtf16<store::ByteOrder::big>},
    ByteOrderMark{"\xFF\xFE", fromUtf16<store::ByteOrder::little>},
};

std::optional<std::string> decoded(std::string_view bytes) {
    for (const ByteOrderMark& mark : marks) {
        if (bytes.starts_with(mark.bytes)) return mark.decode(bytes.substr(mark.bytes.size()));
    }
    if (bytes.find('\0') != std::string_view::npos) return std::nullopt;
    if (auto text = fromUtf8(bytes)) return text;
    return fromWindows1252(bytes);
}

}  // namespace

std::optional<std::string> hostListText(std::string_view bytes) {
    std::optional<std::string> text = decoded(bytes);
    if (text) std::erase(*text, ' ');
    return text;
}

}  // namespace screens
