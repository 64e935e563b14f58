#pragma once

#include <string>
#include <string_view>

namespace store {

// The search rule of every list: a field matches when the lower-cased text stands somewhere in the lower-cased field
// (Unicode lower-casing without a locale, canonically equivalent spellings alike). An empty text matches nothing.
// Text is UTF-8.
class SearchText {
public:
    explicit SearchText(std::string_view text);
    bool matches(std::string_view field) const;

private:
    std::string lowered_;
};

// The form in which texts are compared by the search.
std::string loweredForSearch(std::string_view text);
void appendLoweredForSearch(std::string_view text, std::string& block);

// Unicode lower-casing without a locale.
std::string lowercase(std::string_view text);

}  // namespace store
