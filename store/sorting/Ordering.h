#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace store {

struct AsciiOrder;

// The order of the user's names: ascending, ignoring letter case, by the rules of a locale (Unicode Collation
// Algorithm at secondary strength, through ICU). Strings are UTF-8. The first call of any function prepares the object;
// from then on several threads may call it at once.
class NameOrder {
public:
    // `locale` is an ICU or POSIX locale name ("de_DE"); empty stands for the user's own (LC_ALL, LC_COLLATE, LANG).
    explicit NameOrder(const std::string& locale = {});
    ~NameOrder();
    NameOrder(const NameOrder&) = delete;
    NameOrder& operator=(const NameOrder&) = delete;

    // Negative, zero or positive.
    int compare(std::string_view a, std::string_view b) const;

    // Bytes that compare by memcmp as the names do; made once per name when many are sorted.
    std::string sortKey(std::string_view name) const;

    // Gives much cheaper keys to names of ASCII characters; nullptr where the locale does more with these.
    const AsciiOrder* asciiOrder() const;

private:
    struct Private;
    std::unique_ptr<Private> d_;
};

// An app in a list: never stored.
struct AppInfo {
    std::string bundleIdentifier;
    std::string displayName;

    bool operator==(const AppInfo&) const = default;
};

// Name order of apps. Apps that compare as the same keep their order.
void alphabeticAppInfoSort(std::vector<AppInfo>& apps, const NameOrder& order);

}  // namespace store
