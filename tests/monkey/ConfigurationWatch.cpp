#include "monkey/ConfigurationWatch.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "monkey/Rights.h"
#include "store/files/Temporaries.h"
#include "store/rules/RuleFile.h"

namespace monkey {

namespace {

constexpr store::File everyFile[] = {store::File::appRules, store::File::globalRules, store::File::guiSettings};
constexpr std::string_view markerName = "com.Urmeld.Firewall.disabled";

bool isSameFile(const struct stat& one, const struct stat& other) {
    return one.st_ino == other.st_ino && one.st_size == other.st_size && one.st_mtim.tv_sec == other.st_mtim.tv_sec &&
           one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
}

std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Enough of it to know it by.
std::string textOf(const store::Value* value) {
    constexpr std::size_t enough = 300;
    if (!value) return "nothing";
    const store::Slice slice = sliceOf(*value);
    return std::string(slice.begin, slice.end).substr(0, enough);
}

std::string difference(const std::string& key, const store::Value* before, const store::Value* after) {
    const auto old = before ? before->dictionary() : std::nullopt;
    const auto now = after ? after->dictionary() : std::nullopt;
    if (Rights::isSame(before, after)) return {};
    if (!old || !now) return " " + key + " from " + textOf(before) + " to " + textOf(after);
    std::string text = " " + key + ":";
    for (const auto& [name, value] : *old) text += difference(name, &value, now->find(name));
    for (const auto& [name, value] : *now)
        if (!old->contains(name)) text += difference(name, nullptr, &value);
    return text;
}

bool wasSeen(const std::vector<Sight>& seen, std::string_view screen) {
    return std::any_of(seen.begin(), seen.end(), [&](const Sight& sight) { return sight.screen == screen; });
}

}  // namespace

ConfigurationWatch::ConfigurationWatch(const store::ConfigurationStore& files, IsInstalled isInstalled)
    : files_(files), isInstalled_(std::move(isInstalled)) {
    accept();
}

void ConfigurationWatch::accept() {
    for (const store::File file : everyFile)
        known_[std::size_t(file)] = read(files_.path(file), known_[std::size_t(file)]);
    preferences_ = namesIn(files_.exportDirectory().parent_path());
    exports_ = namesIn(files_.exportDirectory());
    lists_ = namesIn(files_.listDirectory());
}

std::string ConfigurationWatch::check(const std::vector<Sight>& seen) {
    for (const store::File file : everyFile)
        if (std::string finding = checkFile(file, seen); !finding.empty())
            return files_.path(file).filename().string() + " " + finding;
    return checkFolders(seen);
}

ConfigurationWatch::Known ConfigurationWatch::read(const std::filesystem::path& path, const Known& before) const {
    Known now;
    if (lstat(path.c_str(), &now.status) != 0) return {};
    if (isSameFile(now.status, before.status)) return before;
    if (!S_ISREG(now.status.st_mode)) return now;
    now.bytes = bytesOf(path);
    now.dictionary = store::readRuleFile(path);
    return now;
}

std::string ConfigurationWatch::checkFile(store::File file, const std::vector<Sight>& seen) {
    const Known before = known_[std::size_t(file)];
    const Known now = read(files_.path(file), before);
    if (isSameFile(now.status, before.status)) return {};
    known_[std::size_t(file)] = now;
    ++writes_[files_.path(file).filename()];
    if (now.status.st_ino == 0) return "is gone";
    if (!S_ISREG(now.status.st_mode)) return "is no file any more";
    if (before.status.st_ino != 0 && !S_ISREG(before.status.st_mode)) return "was no file and is one now";
    if (!now.dictionary) return "is not entire";
    return checkContent(file, before, now, seen);
}

std::string ConfigurationWatch::checkContent(store::File file, const Known& before, const Known& now,
                                             const std::vector<Sight>& seen) const {
    const store::Dictionary old = before.dictionary.value_or(store::Dictionary());
    std::set<std::string> keys;
    for (const auto* dictionary : {&old, &*now.dictionary})
        for (const auto& [key, value] : *dictionary) keys.insert(key);

    std::string refused;
    for (const std::string& key : keys) {
        const Rights::Change change{file, key, old.find(key), now.dictionary->find(key)};
        const auto allows = [&](const Sight& screen) { return Rights::allow(screen, change); };
        if (Rights::isSame(change.before, change.after) || Rights::allowPruning(change, isInstalled_)) continue;
        if (std::none_of(seen.begin(), seen.end(), allows)) refused += difference(key, change.before, change.after);
    }
    const bool wasDamaged = before.status.st_ino != 0 && !before.dictionary;
    if (refused.empty()) return wasDamaged ? checkKept(file, before, store::damagedSuffix) : std::string();

    const auto replaces = [&](const Sight& screen) {
        return Rights::allowReplacing(screen, file, *now.dictionary, files_.exportDirectory());
    };
    if (std::any_of(seen.begin(), seen.end(), replaces)) {
        const bool wasThere = before.status.st_ino != 0;
        return wasThere ? checkKept(file, before, wasDamaged ? store::damagedSuffix : store::previousSuffix)
                        : std::string();
    }
    std::string screens;
    for (const Sight& sight : seen) screens += " " + sight.screen + " " + sight.bundleIdentifier;
    return "has changed at" + refused + " while" + screens + " was seen";
}

std::string ConfigurationWatch::checkKept(store::File file, const Known& before, std::string_view suffix) const {
    const std::filesystem::path kept = files_.path(file).string() + std::string(suffix);
    return bytesOf(kept) == before.bytes ? std::string() : "was not kept as " + kept.filename().string();
}

std::string ConfigurationWatch::checkFolders(const std::vector<Sight>& seen) {
    const std::filesystem::path folder = files_.exportDirectory().parent_path();
    const Names before = std::exchange(preferences_, namesIn(folder));
    Names known{std::string(markerName), files_.logFile().filename(), files_.exportDirectory().filename()};
    for (const store::File file : everyFile)
        for (const std::string_view suffix : {std::string_view(), store::damagedSuffix, store::previousSuffix})
            known.insert(files_.path(file).filename().string() + std::string(suffix));
    for (const std::string& name : preferences_)
        if (!known.contains(name) && !before.contains(name)) return "there is a new file " + name;

    const auto isAsBefore = [&](const std::string& name) {
        return before.contains(name) == preferences_.contains(name);
    };
    if (!isAsBefore(std::string(markerName)) && !wasSeen(seen, "VxmSettingsViewController"))
        return "the disabled marker has come or gone";
    if (!isAsBefore(files_.logFile().filename()) && !wasSeen(seen, "VxmLogViewController"))
        return "the log has come or gone";

    const Names exportsBefore = std::exchange(exports_, namesIn(files_.exportDirectory()));
    if (exports_ != exportsBefore && !wasSeen(seen, "VxmImportExportViewController")) return "the exports have changed";
    const auto isTemporary = [](const std::string& name) { return store::isTemporaryName(name); };
    if (std::any_of(exports_.begin(), exports_.end(), isTemporary)) return "an export lies about unfinished";
    return lists_ == namesIn(files_.listDirectory()) ? std::string() : "the host lists have changed";
}

ConfigurationWatch::Names ConfigurationWatch::namesIn(const std::filesystem::path& folder) const {
    Names names;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(folder, none)) names.insert(entry.path().filename());
    return names;
}

}  // namespace monkey
