#pragma once

#include <array>

#include "benchmarks/workers/Worker.h"

namespace bench {

using Arguments = std::vector<std::string>;

// A device folder is the first argument of all that work on one.
Figures changeSwitch(const Arguments& arguments);
// A file to read, change and write with libplist.
Figures changeWithLibplist(const Arguments& arguments);
// Opens a rule list, searches it, changes it.
Figures useRuleList(const Arguments& arguments);
// The same for two minutes, and how long the main thread was away in them at most.
Figures watchTwoMinutesOfUse(const Arguments& arguments);
Figures importHostList(const Arguments& arguments);
Figures exportAndImportSettings(const Arguments& arguments);
// Scrolls a rule list in every way there is; the second argument is the screen's pixels per point.
Figures scrollRuleList(const Arguments& arguments);
Figures openLog(const Arguments& arguments);
Figures openChooser(const Arguments& arguments);
// A data directory whose applications GLib lists.
Figures listWithGlib(const Arguments& arguments);
Figures scrollUncachedIcons(const Arguments& arguments);
// Connects to hosts below a domain, at a port, so many times.
Figures connectToHosts(const Arguments& arguments);

inline constexpr std::array workers{
    Worker{"switch", changeSwitch},       Worker{"libplist", changeWithLibplist},
    Worker{"rules", useRuleList},         Worker{"use", watchTwoMinutesOfUse},
    Worker{"import", importHostList},     Worker{"export", exportAndImportSettings},
    Worker{"scroll", scrollRuleList},     Worker{"log", openLog},
    Worker{"chooser", openChooser},       Worker{"glib", listWithGlib},
    Worker{"icons", scrollUncachedIcons}, Worker{"connect", connectToHosts},
};

}  // namespace bench
