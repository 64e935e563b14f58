#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "store/text/Bytes16.h"
#include "store/text/Utf.h"

namespace store {

inline bool isXmlSpace(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

// Without white space around it.
inline std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isXmlSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && isXmlSpace(text.back())) text.remove_suffix(1);
    return text;
}

// The signed comparison with the space is true for bytes outside ASCII as well: they are negative.
inline Bytes16 areOtherThanPlainText(Bytes16 bytes) {
    return (bytes < ' ') | (bytes == '<') | (bytes == '&');
}

// The first byte from p on that is not plain text: '<', '&', a control character or a byte outside ASCII. The text is
// terminated by a 0; up to 16 bytes beyond the result are read.
inline const char* skipPlainText(const char* p) {
    for (;; p += sizeof(Bytes16))
        if (const Positions found(areOtherThanPlainText(loadBytes(p))); !found.empty()) return p + found.first();
}

// The length of the prefix that needs no escaping: plain text without '>'.
inline std::size_t plainTextSize(std::string_view text) {
    return findByte(text, [](Bytes16 bytes) { return areOtherThanPlainText(bytes) | (bytes == '>'); });
}

// A character reference or one of XML's five entities. `end` is behind it; nullptr for anything else.
struct XmlReference {
    char32_t character = 0;
    const char* end = nullptr;
};

// `p` points at the '&'.
XmlReference readReference(const char* p, const char* end);

// The validated text between the tags of a scalar.
struct XmlText {
    std::string_view raw;
    bool isPlain = true;  // without references, comments, CDATA sections and processing instructions

    std::string decoded() const;
};

}  // namespace store
