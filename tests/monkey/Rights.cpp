#include "monkey/Rights.h"

#include <algorithm>
#include <set>
#include <string>

#include "store/Schema.h"
#include "store/rules/RuleFile.h"

namespace monkey::Rights {

namespace {

using Keys = std::set<std::string_view>;

std::string_view textOf(const store::Slice& slice) {
    return {slice.begin, std::size_t(slice.end - slice.begin)};
}

bool isTruth(const store::Value* value, bool truth) {
    return value && value->boolean() == truth;
}

store::Dictionary recordIn(const store::Value* value) {
    return (value ? value->dictionary() : std::nullopt).value_or(store::Dictionary());
}

Keys keysOf(const store::Dictionary& one, const store::Dictionary& other) {
    Keys keys;
    for (const auto* dictionary : {&one, &other})
        for (const auto& [key, value] : *dictionary) keys.insert(key);
    return keys;
}

// A record in which nothing but these keys is another.
bool changesOnly(const Change& change, const Keys& allowed) {
    if (!change.after) return false;
    const store::Dictionary before = recordIn(change.before);
    const store::Dictionary after = recordIn(change.after);
    const Keys keys = keysOf(before, after);
    return std::all_of(keys.begin(), keys.end(), [&](std::string_view key) {
        return allowed.contains(key) || isSame(before.find(key), after.find(key));
    });
}

bool isEmptyArray(const store::Value* value) {
    const auto array = value ? value->array() : std::nullopt;
    return array && array->empty();
}

bool isFresh(const store::Value* value) {
    const store::Dictionary record = recordIn(value);
    const store::Value* mode = record.find(store::keys::allowEverything);
    return record.size() == 3 && isEmptyArray(record.find(store::keys::allow)) &&
           isEmptyArray(record.find(store::keys::deny)) && mode && mode->string() == "";
}

bool allowInAppRules(const Sight& screen, const Change& change) {
    namespace keys = store::keys;
    if (screen.screen == "VxmMainViewController") return !change.after;
    if (screen.screen == "VxmAppChooserControllerViewController") return isFresh(change.after);
    if (screen.bundleIdentifier != change.key) return false;
    if (screen.screen == "VxmAppViewController") {
        Keys allowed(keys::appSwitches.begin(), keys::appSwitches.end());
        allowed.insert({keys::allowEverything, keys::enabled});
        return changesOnly(change, allowed);
    }
    return screen.screen == "VxmAppRulesViewController" &&
           changesOnly(change, {screen.isDeny ? keys::deny : keys::allow});
}

bool allowInGlobalRules(const Sight& screen, const Change& change) {
    namespace keys = store::keys;
    if (!change.after) return false;
    if (screen.screen == "VxmSettingsViewController")
        return std::count(keys::globalSwitches.begin(), keys::globalSwitches.end(), change.key) &&
               change.after->boolean();
    const bool keepsList =
        screen.screen == "VxmGlobalViewController" || screen.screen == "VxmGlobalImportViewController";
    return keepsList && change.key == (screen.isDeny ? keys::globalDeny : keys::globalAllow) &&
           change.after->kind() == store::Kind::array;
}

bool allowInSettings(const Sight& screen, const Change& change) {
    const bool isList = screen.screen == "VxmGlobalViewController" || screen.screen == "VxmAppRulesViewController";
    if (change.key == store::keys::didShowEditAlert) return isList && isTruth(change.after, true);
    return change.key == store::keys::showAllowHelp && screen.screen == "VxmGlobalViewController" &&
           isTruth(change.after, false);
}

std::string_view keyOf(store::File file) {
    switch (file) {
        case store::File::appRules:
            return store::keys::appRules;
        case store::File::globalRules:
            return store::keys::globalRules;
        case store::File::guiSettings:
            break;
    }
    return store::keys::settings;
}

bool isSame(const store::Dictionary& one, const store::Dictionary& other) {
    const Keys keys = keysOf(one, other);
    return std::all_of(keys.begin(), keys.end(),
                       [&](std::string_view key) { return Rights::isSame(one.find(key), other.find(key)); });
}

}  // namespace

bool isSame(const store::Value* one, const store::Value* other) {
    if (!one || !other) return one == other;
    return textOf(sliceOf(*one)) == textOf(sliceOf(*other));
}

bool allow(const Sight& screen, const Change& change) {
    const bool isMarker = change.key == store::keys::marker;
    switch (change.file) {
        case store::File::appRules:
            return (isMarker && !change.before && isTruth(change.after, true)) || allowInAppRules(screen, change);
        case store::File::globalRules:
            return (isMarker && !change.before && isTruth(change.after, true)) || allowInGlobalRules(screen, change);
        case store::File::guiSettings:
            break;
    }
    return allowInSettings(screen, change);
}

bool allowPruning(const Change& change, const std::function<bool(std::string_view)>& isInstalled) {
    if (change.file != store::File::appRules) return false;
    if (change.key == store::keys::marker) return isTruth(change.after, true);
    return !change.after && change.key != store::keys::gameCenterDaemon && !isInstalled(change.key);
}

bool allowReplacing(const Sight& screen, store::File file, const store::Dictionary& after,
                    const std::filesystem::path& exportDirectory) {
    if (screen.screen == "VxmSettingsViewController")
        return file != store::File::guiSettings && after.size() == 1 && isTruth(after.find(store::keys::marker), true);
    if (screen.screen != "VxmImportExportViewController") return false;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(exportDirectory, none)) {
        const auto exported = store::readRuleFile(entry.path());
        const store::Value* held = exported ? exported->find(keyOf(file)) : nullptr;
        if (held && held->dictionary() && isSame(*held->dictionary(), after)) return true;
    }
    return false;
}

}  // namespace monkey::Rights
