#pragma once

#include <string>

namespace monkey {

// What the process holds of the system's, and of widgets: the same again whenever the app is gone.
struct Belongings {
    long threads = 0;
    long descriptors = 0;
    long widgets = 0;

    static Belongings now();
    // Threads that are about to end are given time for it.
    static Belongings atRest(const Belongings& expected);

    bool operator==(const Belongings&) const = default;
    std::string text() const;
    // All there are now, by name.
    static std::string listed();
};

}  // namespace monkey
