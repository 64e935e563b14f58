#pragma once

#include <array>
#include <filesystem>
#include <functional>
#include <set>

#include "monkey/Screens.h"
#include "store/Schema.h"
#include "store/Writers.h"
#include "store/plist/PropertyList.h"
#include "store/rules/RuleFile.h"

// Who may change what in the files, and into what.
namespace monkey::Rights {

namespace keys = store::keys;
using store::File;

// The files, and their places in an export.
inline constexpr std::array<std::pair<File, std::string_view>, 3> everyFile{
    {{File::appRules, keys::appRules}, {File::globalRules, keys::globalRules}, {File::guiSettings, keys::settings}}};

using Keys = std::set<std::string_view>;

// One key of one file; nullptr where there was none or is none now.
struct Change {
    File file;
    std::string_view key;
    const store::Value* before;
    const store::Value* after;
};

inline std::string_view textOf(const store::Value& value) {
    const store::Slice slice = sliceOf(value);
    return {slice.begin, std::size_t(slice.end - slice.begin)};
}

// The same text, or none both times.
inline bool isSame(const store::Value* one, const store::Value* other) {
    return one && other ? textOf(*one) == textOf(*other) : one == other;
}

inline Keys keysOf(const store::Dictionary& one, const store::Dictionary& other) {
    Keys keys;
    for (const auto* dictionary : {&one, &other})
        for (const auto& [key, value] : *dictionary) keys.insert(key);
    return keys;
}

// But for these keys, of which anything may have become.
inline bool isSame(const store::Dictionary& one, const store::Dictionary& other, const Keys& but = {}) {
    const Keys keys = keysOf(one, other);
    return std::all_of(keys.begin(), keys.end(), [&](std::string_view key) {
        return but.contains(key) || isSame(one.find(key), other.find(key));
    });
}

inline bool is(bool truth, const store::Value* value) {
    return value && value->boolean() == truth;
}

inline store::Dictionary recordIn(const store::Value* value) {
    return (value ? value->dictionary() : std::nullopt).value_or(store::Dictionary());
}

// A record of the screen's app in which nothing but these keys is another.
inline bool changesRecord(const Sight& screen, const Change& change, const Keys& allowed) {
    return screen.bundleIdentifier == change.key && change.after &&
           isSame(recordIn(change.before), recordIn(change.after), allowed);
}

inline bool isFresh(const store::Value* value) {
    const store::Dictionary record = recordIn(value);
    const auto isEmpty = [&](std::string_view key) {
        const auto array = record.contains(key) ? record.find(key)->array() : std::nullopt;
        return array && array->empty();
    };
    const store::Value* mode = record.find(keys::allowEverything);
    return record.size() == 3 && isEmpty(keys::allow) && isEmpty(keys::deny) && mode && mode->string() == "";
}

inline bool changesList(const Sight& screen, const Change& change) {
    return change.key == (screen.isDeny ? keys::globalDeny : keys::globalAllow) && change.after &&
           change.after->kind() == store::Kind::array;
}

// What a screen that was seen may do.
struct Right {
    std::string_view screen;
    File file;
    bool (*allows)(const Sight&, const Change&);
};

inline constexpr Right rights[] = {
    {"VxmMainViewController", File::appRules, [](auto&, auto& change) { return !change.after; }},
    {"VxmAppChooserControllerViewController", File::appRules,
     [](auto&, auto& change) { return isFresh(change.after); }},
    {"VxmAppViewController", File::appRules,
     [](auto& screen, auto& change) {
         Keys switches(keys::appSwitches.begin(), keys::appSwitches.end());
         switches.insert({keys::allowEverything, keys::enabled});
         return changesRecord(screen, change, switches);
     }},
    {"VxmAppRulesViewController", File::appRules,
     [](auto& screen, auto& change) {
         return changesRecord(screen, change, {screen.isDeny ? keys::deny : keys::allow});
     }},
    {"VxmSettingsViewController", File::globalRules,
     [](auto&, auto& change) {
         return std::ranges::count(keys::globalSwitches, change.key) && change.after && change.after->boolean();
     }},
    {"VxmGlobalViewController", File::globalRules, changesList},
    {"VxmGlobalImportViewController", File::globalRules, changesList},
    {"VxmGlobalViewController", File::guiSettings,
     [](auto&, auto& change) {
         return (change.key == keys::didShowEditAlert && is(true, change.after)) ||
                (change.key == keys::showAllowHelp && is(false, change.after));
     }},
    {"VxmAppRulesViewController", File::guiSettings,
     [](auto&, auto& change) { return change.key == keys::didShowEditAlert && is(true, change.after); }},
};

// The marker joins whatever a screen may write. The main screen, below all others, looks a second time a moment after
// it has appeared and drops the records of what is not installed.
inline bool allow(const Sights& seen, const Change& change, const std::function<bool(std::string_view)>& isInstalled) {
    const bool isAppRules = change.file == File::appRules;
    if (change.key == keys::marker && change.file != File::guiSettings && is(true, change.after) &&
        (isAppRules || (!change.before && !seen.empty())))
        return true;
    if (isAppRules && !change.after && change.key != keys::marker && change.key != keys::gameCenterDaemon &&
        !isInstalled(change.key))
        return true;
    for (const Sight& sight : seen)
        for (const Right& right : rights)
            if (right.screen == sight.screen && right.file == change.file && right.allows(sight, change)) return true;
    return false;
}

// Whether a screen that was seen may put this in place of the whole file.
inline bool allowReplacing(const Sights& seen, File file, const store::Dictionary& after,
                           const std::filesystem::path& exportDirectory) {
    const bool isEmptied = file != File::guiSettings && after.size() == 1 && is(true, after.find(keys::marker));
    if (isEmptied && wasSeen(seen, "VxmSettingsViewController")) return true;
    if (!wasSeen(seen, "VxmImportExportViewController")) return false;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(exportDirectory, none)) {
        const auto exported = store::readRuleFile(entry.path());
        const store::Value* held = exported ? exported->find(everyFile[std::size_t(file)].second) : nullptr;
        if (held && held->dictionary() && isSame(*held->dictionary(), after)) return true;
    }
    return false;
}

}  // namespace monkey::Rights
