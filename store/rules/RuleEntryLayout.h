#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "store/plist/PropertyList.h"

namespace store {

// How an entry that is a date and a rule and nothing else is laid out when it is written. Files consist of little else,
// so what reads them recognises an entry as a whole by its layout before it looks at it tag by tag.
class RuleEntryLayout {
public:
    // For an entry behind so many tabs.
    explicit RuleEntryLayout(std::size_t tabs);

    const std::string& beforeDate() const { return beforeDate_; }  // from "<dict>" on
    const std::string& beforeRule() const { return beforeRule_; }
    const std::string& end() const { return end_; }

    struct Match {
        Date date;
        std::string_view rule;      // plain text
        const char* end = nullptr;  // behind "</dict>"; nullptr when there is no match
    };

    // The entry at "<dict>" in a Buffer, if it is laid out like this behind the tabs that it has. A rule that is not
    // plain text in UTF-8 does not match, nor does a date that is none.
    static Match matchAt(const char* dict);
    // The "<dict>" on the line behind an entry that ends at `behind`, if there is one that stands as far to the right.
    static const char* nextEntry(const char* dict, const char* behind);

private:
    Match match(const char* dict) const;

    std::string beforeDate_;
    std::string beforeRule_;
    std::string end_;
};

}  // namespace store
