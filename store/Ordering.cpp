#include "store/Ordering.h"

#include <unicode/ucol.h>
#include <unicode/uloc.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>

#include "store/IcuText.h"

namespace store {

namespace {

// The locale whose rules of order the user wants; the same order of precedence as the C library's.
std::string usersLocale() {
    for (const char* variable : {"LC_ALL", "LC_COLLATE", "LANG"}) {
        const char* name = std::getenv(variable);
        if (name && *name) return name;
    }
    return {};
}

// The locale without a language of its own has Unicode's own order, ICU's root locale.
std::string icuLocale(std::string name) {
    name = name.substr(0, name.find('.'));
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

    // Opened when it is first needed: that takes milliseconds, which the app has better use for while it starts.
    UCollator* opened() const {
        if (collator) return collator;
        UErrorCode status = U_ZERO_ERROR;
        collator = ucol_open(icuLocale(locale.empty() ? usersLocale() : locale).c_str(), &status);
        if (collator) ucol_setStrength(collator, UCOL_SECONDARY);
        return collator;
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

void alphabeticAppInfoSort(std::vector<AppInfo>& apps, const NameOrder& order) {
    struct Keyed {
        std::string key;
        AppInfo app;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(apps.size());
    for (AppInfo& app : apps) keyed.push_back({order.sortKey(app.displayName), std::move(app)});
    std::stable_sort(keyed.begin(), keyed.end(), [](const Keyed& a, const Keyed& b) { return a.key < b.key; });
    std::transform(keyed.begin(), keyed.end(), apps.begin(), [](Keyed& entry) { return std::move(entry.app); });
}

}  // namespace store
