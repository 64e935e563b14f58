#include "store/text/Search.h"

#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <optional>

#include "store/text/Ascii.h"
#include "store/text/IcuText.h"

namespace store {

namespace {

// Nothing when the text is not all ASCII.
std::optional<std::string> loweredAscii(std::string_view text) {
    if (!isAscii(text)) return std::nullopt;
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), asciiLower);
    return lower;
}

std::u16string lowered(const std::u16string& text) {
    return fromIcu(text.size(), [&](UChar* to, int32_t capacity, UErrorCode* status) {
        return u_strToLower(to, capacity, text.data(), static_cast<int32_t>(text.size()), "", status);
    });
}

// Canonically equivalent spellings become the same (NFC).
std::u16string composed(const std::u16string& text) {
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2* normalizer = unorm2_getNFCInstance(&status);
    if (U_FAILURE(status)) return text;
    return fromIcu(text.size(), [&](UChar* to, int32_t capacity, UErrorCode* result) {
        return unorm2_normalize(normalizer, text.data(), static_cast<int32_t>(text.size()), to, capacity, result);
    });
}

}  // namespace

SearchText::SearchText(std::string_view text) : lowered_(loweredForSearch(text)) {}

bool SearchText::matches(std::string_view field) const {
    return !lowered_.empty() && loweredForSearch(field).find(lowered_) != std::string::npos;
}

std::string loweredForSearch(std::string_view text) {
    std::optional<std::string> ascii = loweredAscii(text);
    return ascii ? *std::move(ascii) : utf8(composed(lowered(utf16(text))));
}

std::string lowercase(std::string_view text) {
    std::optional<std::string> ascii = loweredAscii(text);
    return ascii ? *std::move(ascii) : utf8(lowered(utf16(text)));
}

}  // namespace store
