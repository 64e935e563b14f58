#include "store/AsciiOrder.h"

#include <unicode/ucol.h>
#include <unicode/ucoleitr.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

namespace store {

namespace {

using Elements = std::vector<int32_t>;

bool isSet(const UCollator* collator, UColAttribute attribute) {
    UErrorCode status = U_ZERO_ERROR;
    return ucol_getAttribute(collator, attribute, &status) == UCOL_ON;
}

// What the collator makes of a text before it compares anything; empty when it fails.
Elements elementsOf(const UCollator* collator, const std::u16string& text) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UCollationElements, decltype(&ucol_closeElements)> iterator(
        ucol_openElements(collator, text.data(), static_cast<int32_t>(text.size()), &status), ucol_closeElements);
    Elements elements;
    if (U_FAILURE(status)) return elements;
    for (int32_t element; (element = ucol_next(iterator.get(), &status)) != UCOL_NULLORDER;)
        elements.push_back(element);
    return elements;
}

// A character's weight may need a second element, which is marked as one that goes on.
bool isOneWeight(const Elements& elements) {
    constexpr int32_t goesOn = 0xC0;
    return elements.size() <= 1 || (elements.size() == 2 && (elements[1] & goesOn) == goesOn);
}

// Whether ASCII text means to the collator what its characters mean one by one: seen on a text in which every
// character has every other one for a neighbour.
bool takesCharactersOneByOne(const UCollator* collator) {
    if (isSet(collator, UCOL_NUMERIC_COLLATION) || isSet(collator, UCOL_CASE_LEVEL)) return false;
    std::array<Elements, asciiCount> single;
    for (char16_t c = 0; c < asciiCount; ++c) {
        single[c] = elementsOf(collator, std::u16string(1, c));
        if (!isOneWeight(single[c])) return false;
    }
    std::u16string text;
    Elements expected;
    for (char16_t a = 0; a < asciiCount; ++a) {
        for (char16_t b = a; b < asciiCount; ++b) {
            for (char16_t c : {a, b}) {
                text.push_back(c);
                expected.insert(expected.end(), single[c].begin(), single[c].end());
            }
        }
    }
    return elementsOf(collator, text) == expected;
}

int compare(const UCollator* collator, UChar a, UChar b) {
    return ucol_strcoll(collator, &a, 1, &b, 1);
}

// Whether two characters differ like accents do: only where all else is the same, whatever follows them.
bool differLikeAccents(const UCollator* collator, UChar a, UChar b) {
    const UChar before[] = {a, u'z'}, behind[] = {b, u'a'};
    return compare(collator, a, b) < 0 && ucol_strcoll(collator, before, 2, behind, 2) > 0;
}

}  // namespace

std::optional<AsciiOrder> asciiOrder(const UCollator* collator) {
    if (!takesCharactersOneByOne(collator)) return std::nullopt;
    std::array<UChar, asciiCount> characters;
    std::iota(characters.begin(), characters.end(), UChar{0});
    std::stable_sort(characters.begin(), characters.end(),
                     [&](UChar a, UChar b) { return compare(collator, a, b) < 0; });
    AsciiOrder order{};
    UChar previous = 0;
    std::uint8_t place = 0;
    for (UChar c : characters) {
        if (ucol_strcoll(collator, &c, 1, nullptr, 0) == 0) continue;
        if (place > 0 && differLikeAccents(collator, previous, c)) return std::nullopt;
        if (place == 0 || compare(collator, previous, c) != 0) ++place;
        order[c] = place;
        previous = c;
    }
    return order;
}

}  // namespace store
