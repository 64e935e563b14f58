#pragma once

#include <string>
#include <string_view>

namespace store {

// The search of every list: a case-insensitive substring search. A field matches when it contains the text, both
// lower-cased without a locale and normalised (NFC). An empty text matches nothing. Text is UTF-8.
class SearchText {
public:
    explicit SearchText(std::string_view text);
    bool matches(std::string_view field) const;

private:
    std::string lowered_;
};

// The lower-cased and normalised form that the search compares. ASCII text takes a fast path without ICU.
std::string loweredForSearch(std::string_view text);

// Unicode lower-casing without a locale, not normalised.
std::string lowercase(std::string_view text);

}  // namespace store
