#include "screens/rules/DateFormatter.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <cstdlib>

namespace screens {

namespace {

icu::Locale timeLocale() {
    for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const char* name = std::getenv(variable);
        if (name && *name) return icu::Locale::createCanonical(name);
    }
    return icu::Locale::getDefault();
}

}  // namespace

struct DateFormatter::Private {
    std::unique_ptr<icu::DateFormat> format{
        icu::DateFormat::createDateTimeInstance(icu::DateFormat::kMedium, icu::DateFormat::kMedium, timeLocale())};
};

DateFormatter::DateFormatter() : d_(std::make_unique<Private>()) {}
DateFormatter::~DateFormatter() = default;

QString DateFormatter::stringFromDate(std::chrono::sys_seconds date) const {
    if (!d_->format) return {};
    icu::UnicodeString text;
    d_->format->format(UDate(date.time_since_epoch().count()) * 1000.0, text);
    return QString::fromUtf16(text.getBuffer(), text.length());
}

}  // namespace screens
