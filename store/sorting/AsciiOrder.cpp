#include "store/sorting/AsciiOrder.h"

#include <unicode/ucol.h>
#include <unicode/ucoleitr.h>
#include <unicode/uset.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "store/text/IcuText.h"

namespace store {

namespace {

using Elements = std::vector<int32_t>;

bool isSet(const UCollator* collator, UColAttribute attribute) {
    UErrorCode status = U_ZERO_ERROR;
    return ucol_getAttribute(collator, attribute, &status) == UCOL_ON;
}

// The collation elements of a text; empty on an error.
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

// One collation element, perhaps with a continuation.
bool isOneWeight(const Elements& elements) {
    constexpr int32_t continuation = 0xC0;
    return elements.size() <= 1 || (elements.size() == 2 && (elements[1] & continuation) == continuation);
}

bool isAsciiOnly(const std::u16string& text) {
    return std::ranges::all_of(text, [](char16_t c) { return c < AsciiOrder::characterCount; });
}

// The collator's contractions of ASCII characters.
std::vector<std::u16string> contractions(const UCollator* collator) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<USet, decltype(&uset_close)> all(uset_openEmpty(), uset_close);
    ucol_getContractionsAndExpansions(collator, all.get(), nullptr, false, &status);
    std::vector<std::u16string> found;
    for (int32_t i = 0, count = uset_getItemCount(all.get()); i < count; ++i) {
        UChar32 first = 0, last = 0;
        std::u16string text = fromIcu(8, [&](UChar* to, int32_t capacity, UErrorCode* failure) {
            const int32_t size = uset_getItem(all.get(), i, &first, &last, to, capacity, failure);
            return size < 2 ? 0 : size;  // a range of characters, not a string
        });
        if (!text.empty() && isAsciiOnly(text)) found.push_back(std::move(text));
    }
    return found;
}

// The ASCII characters and contractions with their collation elements.
class Alphabet {
public:
    // Returns false when the collator does more than map each of them to one weight.
    bool load(const UCollator* collator) {
        if (isSet(collator, UCOL_NUMERIC_COLLATION) || isSet(collator, UCOL_CASE_LEVEL)) return false;
        for (char16_t c = 0; c < AsciiOrder::characterCount; ++c) letters_[std::u16string(1, c)];
        for (const std::u16string& contraction : contractions(collator)) letters_[contraction];
        for (auto& [letter, elements] : letters_) {
            elements = elementsOf(collator, letter);
            if (letter.size() > 2 || !isOneWeight(elements)) return false;
        }
        return takesLettersOneByOne(collator);
    }

    const std::map<std::u16string, Elements>& letters() const { return letters_; }

private:
    // Whether the elements of a text are those of its letters. Checked with a text in which every character is next to
    // every other one.
    bool takesLettersOneByOne(const UCollator* collator) const {
        std::u16string text;
        for (char16_t a = 0; a < AsciiOrder::characterCount; ++a)
            for (char16_t b = a; b < AsciiOrder::characterCount; ++b) text += {a, b};
        Elements expected;
        for (std::size_t at = 0; at < text.size();) {
            auto letter = letters_.find(text.substr(at, 2));
            if (letter == letters_.end()) letter = letters_.find(text.substr(at, 1));
            expected.insert(expected.end(), letter->second.begin(), letter->second.end());
            at += letter->first.size();
        }
        return elementsOf(collator, text) == expected;
    }

    std::map<std::u16string, Elements> letters_;
};

int compare(const UCollator* collator, const std::u16string& a, const std::u16string& b) {
    return ucol_strcoll(collator, a.data(), static_cast<int32_t>(a.size()), b.data(), static_cast<int32_t>(b.size()));
}

// Whether two letters differ at the secondary level only, as accents do: a later primary difference outweighs that.
bool differLikeAccents(const UCollator* collator, const std::u16string& a, const std::u16string& b) {
    return compare(collator, a, b) < 0 && compare(collator, a + u'z', b + u'a') > 0;
}

void setWeight(AsciiOrder& order, const std::u16string& letter, std::uint8_t weight) {
    const auto first = static_cast<unsigned char>(letter[0]);
    if (letter.size() == 1) {
        order.weights[first] = weight;
    } else {
        order.beginsPair[first] = true;
        order.pairs.push_back({static_cast<char>(letter[0]), static_cast<char>(letter[1]), weight});
    }
}

}  // namespace

const AsciiOrder::Pair* AsciiOrder::pair(char first, char second) const {
    auto found =
        std::ranges::find_if(pairs, [&](const Pair& each) { return each.first == first && each.second == second; });
    return found == pairs.end() ? nullptr : &*found;
}

bool AsciiOrder::writeKey(std::string_view text, char* key) const {
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto c = static_cast<unsigned char>(text[at]);
        if (c >= characterCount) return false;
        std::uint8_t weight = weights[c];
        if (beginsPair[c] && at + 1 < text.size()) {
            if (const Pair* letter = pair(text[at], text[at + 1])) {
                weight = letter->weight;
                ++at;
            }
        }
        *key = static_cast<char>(weight);
        key += weight != 0;
    }
    *key = '\0';
    return true;
}

std::optional<AsciiOrder> asciiOrder(const UCollator* collator) {
    Alphabet alphabet;
    if (!alphabet.load(collator)) return std::nullopt;
    std::vector<std::u16string> letters;
    for (const auto& [letter, elements] : alphabet.letters()) letters.push_back(letter);
    std::ranges::stable_sort(letters, [&](const auto& a, const auto& b) { return compare(collator, a, b) < 0; });
    AsciiOrder order;
    const std::u16string* previous = nullptr;
    std::uint8_t weight = 0;
    for (const std::u16string& letter : letters) {
        const bool isIgnorable = compare(collator, letter, {}) == 0;
        if (!isIgnorable) {
            if (previous && differLikeAccents(collator, *previous, letter)) return std::nullopt;
            if (!previous || compare(collator, *previous, letter) != 0) ++weight;
            previous = &letter;
        }
        setWeight(order, letter, isIgnorable ? 0 : weight);
    }
    return order;
}

}  // namespace store
