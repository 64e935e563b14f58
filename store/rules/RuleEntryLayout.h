#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "store/plist/PropertyList.h"

namespace store {

// The exact text of an entry with a date and a rule and no other key, as it is written. Files consist of such entries,
// so readers compare an entry with the layout first and parse it tag by tag only when it does not match.
class RuleEntryLayout {
public:
    // For an entry indented by `tabs`.
    explicit RuleEntryLayout(std::size_t tabs);

    const std::string& beforeDate() const { return beforeDate_; }  // begins with "<dict>"
    const std::string& beforeRule() const { return beforeRule_; }
    const std::string& end() const { return end_; }

    struct Match {
        Date date;
        std::string_view rule;      // plain text
        const char* end = nullptr;  // behind "</dict>"; nullptr when there is no match
    };

    // Matches the entry at the "<dict>" in a Buffer, at its own indentation. No match where the rule is not plain UTF-8
    // (see skipPlainText()) or the date is malformed.
    static Match matchAt(const char* dict);
    // The "<dict>" on the line behind an entry that ends at `behind`; nullptr when there is none of the same
    // indentation.
    static const char* nextEntry(const char* dict, const char* behind);

    // The layout of an entry that matches.
    static const RuleEntryLayout& of(const char* dict);

    struct Texts {
        std::string_view date;
        std::string_view rule;
        const char* next = nullptr;  // the next entry's "<dict>", if one follows
    };
    // Of an entry that matches this layout, in a text up to `end`. Nothing is compared: takes a fifth of matchAt().
    Texts textsOf(const char* dict, const char* end) const;

private:
    Match match(const char* dict) const;

    std::size_t tabs_;
    std::string beforeDate_;
    std::string beforeRule_;
    std::string end_;
};

}  // namespace store
