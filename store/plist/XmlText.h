#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "store/text/Utf.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace store {

inline bool isXmlSpace(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

// The first byte from p on that is not plain text: '<', '&', a control character or a byte outside ASCII. The text is
// terminated by a 0.
inline const char* skipPlainTextBytewise(const char* p) {
    while (static_cast<signed char>(*p) >= ' ' && *p != '<' && *p != '&') ++p;
    return p;
}

// The same, 16 bytes at a time. Reads up to 16 bytes beyond the result.
inline const char* skipPlainText(const char* p) {
#if defined(__SSE2__)
    const __m128i space = _mm_set1_epi8(' ');
    const __m128i tag = _mm_set1_epi8('<');
    const __m128i reference = _mm_set1_epi8('&');
    for (;; p += 16) {
        __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        // The comparison is signed: bytes outside ASCII are negative, so below the space as well.
        __m128i found = _mm_or_si128(_mm_cmplt_epi8(bytes, space),
                                     _mm_or_si128(_mm_cmpeq_epi8(bytes, tag), _mm_cmpeq_epi8(bytes, reference)));
        if (int mask = _mm_movemask_epi8(found)) return p + __builtin_ctz(static_cast<unsigned>(mask));
    }
#else
    return skipPlainTextBytewise(p);
#endif
}

// The length of the prefix that needs no escaping: plain text without '>'.
inline std::size_t plainTextSizeBytewise(std::string_view text) {
    const auto isOther = [](char c) { return static_cast<signed char>(c) < ' ' || c == '<' || c == '>' || c == '&'; };
    return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isOther) - text.begin());
}

// The same, 16 bytes at a time. The last block may overlap the one before.
inline std::size_t plainTextSize(std::string_view text) {
#if defined(__SSE2__)
    constexpr std::size_t step = 16;
    if (text.size() < step) return plainTextSizeBytewise(text);
    const __m128i space = _mm_set1_epi8(' ');
    const __m128i tag = _mm_set1_epi8('<');
    const __m128i tagEnd = _mm_set1_epi8('>');
    const __m128i reference = _mm_set1_epi8('&');
    for (std::size_t at = 0;; at = std::min(at + step, text.size() - step)) {
        __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
        __m128i found = _mm_or_si128(_mm_or_si128(_mm_cmplt_epi8(bytes, space), _mm_cmpeq_epi8(bytes, reference)),
                                     _mm_or_si128(_mm_cmpeq_epi8(bytes, tag), _mm_cmpeq_epi8(bytes, tagEnd)));
        if (int mask = _mm_movemask_epi8(found))
            return at + static_cast<std::size_t>(__builtin_ctz(static_cast<unsigned>(mask)));
        if (at + step == text.size()) return text.size();
    }
#else
    return plainTextSizeBytewise(text);
#endif
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
