#include "store/text/IcuText.h"

#include <unicode/ustring.h>

namespace store {

namespace {

constexpr UChar32 replacement = 0xFFFD;

}  // namespace

std::u16string utf16(std::string_view text) {
    return fromIcu(text.size(), [&](UChar* to, int32_t capacity, UErrorCode* status) {
        int32_t length = 0;
        u_strFromUTF8WithSub(to, capacity, &length, text.data(), static_cast<int32_t>(text.size()), replacement,
                             nullptr, status);
        return length;
    });
}

std::string utf8(const std::u16string& text) {
    std::string result(text.size() * 3, '\0');
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = 0;
    u_strToUTF8WithSub(result.data(), static_cast<int32_t>(result.size()), &length, text.data(),
                       static_cast<int32_t>(text.size()), replacement, nullptr, &status);
    result.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
    return result;
}

}  // namespace store
