#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace store {

struct AsciiOrder;

// Compares names by the rules of a locale, ignoring case: the Unicode Collation Algorithm at secondary strength, by
// ICU. Strings are UTF-8. The collator is opened by the first call of any function; after that all are thread-safe.
class NameOrder {
public:
    // `locale` is an ICU or POSIX locale name ("de_DE"); empty for the user's (LC_ALL, LC_COLLATE, LANG).
    explicit NameOrder(const std::string& locale = {});
    ~NameOrder();
    NameOrder(const NameOrder&) = delete;
    NameOrder& operator=(const NameOrder&) = delete;

    // Negative, zero or positive.
    int compare(std::string_view a, std::string_view b) const;

    // A sort key: keys compare by memcmp as the names do.
    std::string sortKey(std::string_view name) const;

    // Cheaper sort keys for ASCII names; nullptr where the locale's rules do not allow them.
    const AsciiOrder* asciiOrder() const;

private:
    struct Private;
    std::unique_ptr<Private> d_;
};

// An app in a list of apps. Never stored.
struct AppInfo {
    std::string bundleIdentifier;
    std::string displayName;

    bool operator==(const AppInfo&) const = default;
};

// Sorts apps by their display names; stable.
void alphabeticAppInfoSort(std::vector<AppInfo>& apps, const NameOrder& order);

}  // namespace store
