#include "store/Search.h"

#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <vector>

#include "store/IcuText.h"

namespace store {

namespace {

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
}

void appendLoweredAscii(std::string_view text, std::string& block) {
    std::size_t size = block.size();
    block.append(text);
    for (char* c = block.data() + size; c < block.data() + block.size(); ++c)
        if (*c >= 'A' && *c <= 'Z') *c = static_cast<char>(*c - 'A' + 'a');
}

std::string loweredAscii(std::string_view text) {
    std::string lowered;
    appendLoweredAscii(text, lowered);
    return lowered;
}

std::u16string lowered(const std::u16string& text) {
    return fromIcu(text.size(), [&](UChar* to, int32_t capacity, UErrorCode* status) {
        return u_strToLower(to, capacity, text.data(), static_cast<int32_t>(text.size()), "", status);
    });
}

// Spellings of the same characters become one.
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

void appendLoweredForSearch(std::string_view text, std::string& block) {
    if (isAscii(text))
        appendLoweredAscii(text, block);
    else
        block.append(utf8(composed(lowered(utf16(text)))));
}

std::string loweredForSearch(std::string_view text) {
    std::string lowered;
    appendLoweredForSearch(text, lowered);
    return lowered;
}

std::string lowercase(std::string_view text) {
    return isAscii(text) ? loweredAscii(text) : utf8(lowered(utf16(text)));
}

}  // namespace store
