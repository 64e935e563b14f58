#include "store/Search.h"

#include <unicode/unorm2.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "store/IcuText.h"

namespace store {

namespace {

constexpr std::size_t wordSize = sizeof(std::uint64_t);
constexpr std::uint64_t everyByte = 0x0101010101010101;
constexpr std::uint64_t highBits = 0x80 * everyByte;

// Eight ASCII characters at once. A sum's high bit tells whether a character is at or above a letter: none carries over
// into its neighbour.
std::uint64_t loweredWord(std::uint64_t word) {
    const std::uint64_t fromA = word + (0x80 - 'A') * everyByte;
    const std::uint64_t behindZ = word + (0x80 - 'Z' - 1) * everyByte;
    return word | ((fromA & ~behindZ & highBits) >> 2);
}

// Hands out a text as numbers of eight characters; what is left at the end is filled up with NULs.
template <typename Char, typename Visit>
void visitWords(Char* text, std::size_t size, Visit visit) {
    std::uint64_t word;
    for (; size >= wordSize; text += wordSize, size -= wordSize) {
        std::memcpy(&word, text, wordSize);
        visit(word, text, wordSize);
    }
    if (size == 0) return;
    word = 0;
    std::memcpy(&word, text, size);
    visit(word, text, size);
}

bool isAscii(std::string_view text) {
    std::uint64_t all = 0;
    visitWords(text.data(), text.size(), [&](std::uint64_t word, const char*, std::size_t) { all |= word; });
    return (all & highBits) == 0;
}

void appendLoweredAscii(std::string_view text, std::string& block) {
    const std::size_t begin = block.size();
    block.append(text);
    visitWords(block.data() + begin, text.size(), [](std::uint64_t word, char* to, std::size_t size) {
        word = loweredWord(word);
        if (size == wordSize)
            std::memcpy(to, &word, wordSize);
        else
            std::memcpy(to, &word, size);
    });
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
