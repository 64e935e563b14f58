#pragma once

#include <unicode/utypes.h>

#include <string>
#include <string_view>

namespace store {

// Text on its way to ICU and back. What is malformed becomes U+FFFD.
std::u16string utf16(std::string_view utf8Text);
std::string utf8(const std::u16string& utf16Text);

// What an ICU function of the usual kind (destination, capacity, status; returns the length that it wants) yields.
// Nothing when it fails.
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
