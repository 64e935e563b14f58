#include "store/text/Search.h"

#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "store/text/IcuText.h"

namespace store {

namespace {

constexpr std::size_t wordSize = sizeof(std::uint64_t);
constexpr std::uint64_t everyByte = 0x0101010101010101;
constexpr std::uint64_t highBits = 0x80 * everyByte;

// Lowers eight ASCII characters at once, one in each byte of the word. The high bit of a byte's sum says whether the
// character is at or above a letter; no sum carries into the next byte.
std::uint64_t loweredWord(std::uint64_t word) {
    const std::uint64_t fromA = word + (0x80 - 'A') * everyByte;
    const std::uint64_t behindZ = word + (0x80 - 'Z' - 1) * everyByte;
    return word | ((fromA & ~behindZ & highBits) >> 2);
}

// Lowers ASCII letters in place. Returns false when the text is not all ASCII; its bytes are then garbage.
bool lowerAscii(char* text, std::size_t size) {
    std::uint64_t all = 0;
    auto lowerWord = [&all](char* at) {
        std::uint64_t word;
        std::memcpy(&word, at, wordSize);
        all |= word;
        word = loweredWord(word);
        std::memcpy(at, &word, wordSize);
    };
    if (size >= wordSize) {
        for (std::size_t at = 0; at + wordSize <= size; at += wordSize) lowerWord(text + at);
        lowerWord(text + size - wordSize);  // overlaps the word before: lowering is idempotent
    } else {
        char word[wordSize] = {};
        std::copy_n(text, size, word);
        lowerWord(word);
        std::copy_n(word, size, text);
    }
    return (all & highBits) == 0;
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

void appendLoweredForSearch(std::string_view text, std::string& block) {
    const std::size_t begin = block.size();
    block.append(text);
    if (lowerAscii(block.data() + begin, text.size())) return;
    block.resize(begin);
    block.append(utf8(composed(lowered(utf16(text)))));
}

std::string loweredForSearch(std::string_view text) {
    std::string lowered;
    appendLoweredForSearch(text, lowered);
    return lowered;
}

std::string lowercase(std::string_view text) {
    std::string lower(text);
    return lowerAscii(lower.data(), lower.size()) ? lower : utf8(lowered(utf16(text)));
}

}  // namespace store
