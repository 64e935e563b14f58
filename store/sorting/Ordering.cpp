#include "store/sorting/Ordering.h"

#include <unicode/ucol.h>
#include <unicode/uloc.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <optional>
#include <string_view>
#include <utility>

#include "store/sorting/AsciiOrder.h"
#include "store/sorting/NameSort.h"
#include "store/text/IcuText.h"

namespace store {

namespace {

// The user's locale for collation, with the precedence of the C library.
std::string usersLocale() {
    for (const char* variable : {"LC_ALL", "LC_COLLATE", "LANG"}) {
        const char* name = std::getenv(variable);
        if (name && *name) return name;
    }
    return {};
}

// The script of a C library locale modifier; other modifiers do not matter for collation.
std::string_view scriptOf(std::string_view modifier) {
    constexpr std::pair<std::string_view, std::string_view> scripts[] = {
        {"@latin", "Latn"}, {"@iqtelif", "Latn"}, {"@cyrillic", "Cyrl"}, {"@devanagari", "Deva"}, {"@arabic", "Arab"},
    };
    for (const auto& [name, script] : scripts)
        if (modifier == name) return script;
    return {};
}

// Converts "language_TERRITORY.encoding@modifier". The C locale becomes ICU's root locale.
std::string icuLocale(std::string name) {
    const std::size_t modifier = std::min(name.find('@'), name.size());
    const std::string_view script = scriptOf(std::string_view(name).substr(modifier));
    name = name.substr(0, std::min(name.find('.'), modifier));
    if (!script.empty()) name.insert(std::min(name.find('_'), name.size()), "_" + std::string(script));
    if (name == "C" || name == "POSIX") return {};
    char canonical[ULOC_FULLNAME_CAPACITY];
    UErrorCode status = U_ZERO_ERROR;
    uloc_canonicalize(name.c_str(), canonical, sizeof canonical, &status);
    return U_SUCCESS(status) && status != U_STRING_NOT_TERMINATED_WARNING ? canonical : std::string();
}

}  // namespace

struct NameOrder::Private {
    std::string locale;
    mutable UCollator* collator = nullptr;
    mutable std::optional<AsciiOrder> ascii;
    mutable bool knowsAscii = false;

    // Opened lazily: opening takes milliseconds of the app's start.
    UCollator* opened() const {
        if (collator) return collator;
        UErrorCode status = U_ZERO_ERROR;
        collator = ucol_open(icuLocale(locale.empty() ? usersLocale() : locale).c_str(), &status);
        if (collator) ucol_setStrength(collator, UCOL_SECONDARY);
        return collator;
    }

    const std::optional<AsciiOrder>& asciiOrder() const {
        if (!knowsAscii) ascii = store::asciiOrder(opened());
        knowsAscii = true;
        return ascii;
    }

    ~Private() {
        if (collator) ucol_close(collator);
    }
};

NameOrder::NameOrder(const std::string& locale) : d_(std::make_unique<Private>()) {
    d_->locale = locale;
}

NameOrder::~NameOrder() = default;

int NameOrder::compare(std::string_view a, std::string_view b) const {
    UErrorCode status = U_ZERO_ERROR;
    return ucol_strcollUTF8(d_->opened(), a.data(), static_cast<int32_t>(a.size()), b.data(),
                            static_cast<int32_t>(b.size()), &status);
}

std::string NameOrder::sortKey(std::string_view name) const {
    std::u16string text = utf16(name);
    std::string key(text.size() * 3 + 16, '\0');
    for (;;) {
        auto size = static_cast<std::size_t>(
            ucol_getSortKey(d_->opened(), text.data(), static_cast<int32_t>(text.size()),
                            reinterpret_cast<uint8_t*>(key.data()), static_cast<int32_t>(key.size())));
        bool isComplete = size <= key.size();
        key.resize(size);
        if (isComplete) return key;
    }
}

const AsciiOrder* NameOrder::asciiOrder() const {
    const std::optional<AsciiOrder>& order = d_->asciiOrder();
    return order ? &*order : nullptr;
}

void alphabeticAppInfoSort(std::vector<AppInfo>& apps, const NameOrder& order) {
    std::vector<std::uint32_t> positions(apps.size());
    std::iota(positions.begin(), positions.end(), 0u);
    sortByName(
        positions, [&](std::uint32_t position) -> std::string_view { return apps[position].displayName; }, order);
    std::vector<AppInfo> sorted;
    sorted.reserve(apps.size());
    for (std::uint32_t position : positions) sorted.push_back(std::move(apps[position]));
    apps = std::move(sorted);
}

}  // namespace store
