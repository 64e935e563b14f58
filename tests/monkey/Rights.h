#pragma once

#include <filesystem>
#include <functional>
#include <string_view>

#include "monkey/Screens.h"
#include "store/Writers.h"
#include "store/plist/PropertyList.h"

// Who may change what in the files, and into what.
namespace monkey::Rights {

// One key of one file; nullptr where there was none or is none now.
struct Change {
    store::File file;
    std::string_view key;
    const store::Value* before;
    const store::Value* after;
};

// Whether a screen that was seen may do that.
bool allow(const Sight& screen, const Change& change);

// What happens to the app rules whatever is seen: the main screen, below all others, looks a second time a moment after
// it has appeared and drops the records of what is not installed.
bool allowPruning(const Change& change, const std::function<bool(std::string_view)>& isInstalled);

// Whether a screen that was seen may put this in place of the whole file.
bool allowReplacing(const Sight& screen, store::File file, const store::Dictionary& after,
                    const std::filesystem::path& exportDirectory);

// The same text, or none both times.
bool isSame(const store::Value* one, const store::Value* other);

}  // namespace monkey::Rights
