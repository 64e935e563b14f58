#pragma once

#include <string_view>

#include "store/NotifyCenter.h"
#include "store/SharedFiles.h"

namespace store {

// The table of all changes of the dictionary files.

enum class WhenMissing { writeNothing, startEmpty };
enum class Marker { add, leave };

// A row of the table.
struct Writer {
    File file;
    WhenMissing whenMissing;
    Marker marker;                       // "add": the marker entry is added when absent
    std::string_view notification = {};  // posted after the write; none when empty
};

namespace writers {

using enum File;
using enum WhenMissing;
using enum Marker;

// Main screen.
inline constexpr Writer pruneApps{appRules, writeNothing, add};
inline constexpr Writer addApp{appRules, writeNothing, add};
inline constexpr Writer deleteApp{appRules, writeNothing, leave};

// Per-app settings.
inline constexpr Writer appEnabled{appRules, writeNothing, add, hookLate};
inline constexpr Writer appDisabled{appRules, writeNothing, add};
inline constexpr Writer appSwitch{appRules, writeNothing, add};

// Rule lists.
inline constexpr Writer globalRuleList{globalRules, writeNothing, add};
inline constexpr Writer appRuleList{appRules, writeNothing, add};
inline constexpr Writer guiFlag{guiSettings, startEmpty, leave};

// Settings and maintenance.
inline constexpr Writer globalSwitch{globalRules, startEmpty, add, reloadBoth};
inline constexpr Writer listImport{globalRules, writeNothing, add};

}  // namespace writers

}  // namespace store
