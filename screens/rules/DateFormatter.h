#pragma once

#include <QString>
#include <chrono>
#include <memory>

namespace screens {

// Dates as a person reads them: medium date and medium time in the person's locale (LC_TIME) and time zone, by the
// Unicode CLDR's patterns. Made once per screen; formatting is cheap.
class DateFormatter {
public:
    DateFormatter();
    ~DateFormatter();
    DateFormatter(const DateFormatter&) = delete;
    DateFormatter& operator=(const DateFormatter&) = delete;

    QString stringFromDate(std::chrono::sys_seconds date) const;

private:
    struct Private;
    std::unique_ptr<Private> d_;
};

}  // namespace screens
