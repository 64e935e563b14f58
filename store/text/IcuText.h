#pragma once

#include <unicode/utypes.h>

#include <string>
#include <string_view>

namespace store {

// Conversion between UTF-8 and the UTF-16 that ICU takes. Malformed input becomes U+FFFD.
std::u16string utf16(std::string_view utf8Text);
std::string utf8(const std::u16string& utf16Text);

// The output of an ICU function that takes destination, capacity and status and returns the length it needs. Calls it
// again with that length where `expectedSize` is too small. Empty when it fails.
template <class Function>
std::u16string fromIcu(std::size_t expectedSize, Function function) {
    std::u16string text(expectedSize, u'\0');
    for (;;) {
        UErrorCode status = U_ZERO_ERROR;
        int32_t length = function(text.data(), static_cast<int32_t>(text.size()), &status);
        bool isTooSmall = status == U_BUFFER_OVERFLOW_ERROR;
        text.resize(isTooSmall || U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
        if (!isTooSmall) return text;
    }
}

}  // namespace store
