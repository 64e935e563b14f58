#include "store/ConfigurationStore.h"

#include <future>
#include <utility>

#include "store/Schema.h"
#include "store/files/FileReading.h"
#include "store/files/FileReplacement.h"
#include "store/files/Temporaries.h"
#include "store/plist/PropertyListFile.h"
#include "store/rules/RuleFile.h"

namespace store {

namespace {

bool isThere(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::exists(path, ignored);
}

// True only when the system says so: on an error there may be a file to lose.
bool isMissing(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::status(path, ignored).type() == std::filesystem::file_type::not_found;
}

// Where the path is a symbolic link, temporary files lie beside its target. Only those of this file are removed there.
void removeStaleTemporariesBesideTarget(const std::filesystem::path& path) {
    const std::optional<std::filesystem::path> target = resolveLinks(path);
    if (target && *target != path) removeStaleTemporaries(target->parent_path(), target->filename().string());
}

void addMarker(Dictionary& dictionary) {
    if (!dictionary.contains(keys::marker)) dictionary.set(keys::marker, Value(true));
}

Dictionary markerAlone() {
    Dictionary dictionary;
    addMarker(dictionary);
    return dictionary;
}

}  // namespace

ConfigurationStore::ConfigurationStore(std::filesystem::path root, NotifyCenter& notifyCenter)
    : root_(std::move(root)), notifyCenter_(notifyCenter) {
    removeStaleTemporaries(preferencesFolder(root_));
    removeStaleTemporaries(exportDirectory());
    for (File file : {File::appRules, File::globalRules, File::guiSettings})
        removeStaleTemporariesBesideTarget(path(file));
}

std::optional<Dictionary> ConfigurationStore::read(File file) const {
    return readRuleFile(path(file));
}

bool ConfigurationStore::exists(File file) const {
    return isThere(path(file));
}

bool ConfigurationStore::change(const Writer& writer, const std::function<void(Dictionary&)>& change,
                                const std::function<void()>& afterWrite) {
    std::error_code failed;
    std::optional<Dictionary> dictionary = readRuleFile(path(writer.file), failed);
    const bool startsEmpty = !dictionary;
    if (startsEmpty) {
        // Only a file known to be missing or damaged starts empty: one that could not be read may hold rules.
        if (failed || writer.whenMissing == WhenMissing::writeNothing) return false;
        dictionary.emplace();
    }
    change(*dictionary);
    if (writer.marker == Marker::add) addMarker(*dictionary);
    writeDictionary(path(writer.file), *dictionary,
                    startsEmpty ? KeptSuffix([] { return damagedSuffix; }) : KeptSuffix());
    if (afterWrite) afterWrite();
    if (!writer.notification.empty()) notifyCenter_.post(writer.notification);
    return true;
}

bool ConfigurationStore::raiseFlag(std::string_view key) {
    const auto isUp = [&] {
        const std::optional<Dictionary> flags = read(File::guiSettings);
        return flags && isTrue(*flags, key);
    };
    if (raisedInVain_.contains(key) || isUp()) return false;
    change(writers::guiFlag, [&](Dictionary& flags) { flags.set(key, Value(true)); });
    if (!isUp()) raisedInVain_.emplace(key);
    return true;
}

void ConfigurationStore::replace(File file, const Dictionary& dictionary) {
    const std::filesystem::path replaced = path(file);
    // A file that cannot be read must not overwrite an earlier ".previous". It is examined while the new one is
    // written.
    std::future<bool> isGood = std::async([&] { return readRuleFile(replaced).has_value(); });
    writeDictionary(replaced, dictionary, [&] { return isGood.get() ? previousSuffix : damagedSuffix; });
}

void ConfigurationStore::createAppRulesFileIfMissing() {
    if (isMissing(path(File::appRules))) writeDictionary(path(File::appRules), markerAlone());
}

bool ConfigurationStore::isDisabled() const {
    return isThere(disabledMarker(root_));
}

void ConfigurationStore::setDisabled(bool disabled) {
    const std::filesystem::path marker = disabledMarker(root_);
    // An existing marker is not replaced: it may be a link to another file.
    if (disabled && !isThere(marker)) replaceFile(marker, [](Sink&) {});
    if (!disabled) removeFile(marker);
    notifyCenter_.post(reloadBoth);
}

void ConfigurationStore::deleteAllRulesAndSettings(const std::function<void()>& afterWrite) {
    replace(File::appRules, markerAlone());
    replace(File::globalRules, markerAlone());
    if (afterWrite) afterWrite();
    notifyCenter_.post(reloadBoth);
}

void ConfigurationStore::terminate() {
    notifyCenter_.post(reloadBoth);
    notifyCenter_.flush();
}

std::filesystem::path ConfigurationStore::path(File file) const {
    return pathOf(file, root_);
}

std::filesystem::path ConfigurationStore::logFile() const {
    return store::logFile(root_);
}

std::filesystem::path ConfigurationStore::exportDirectory() const {
    return preferencesFolder(root_) / "Vxm";
}

std::filesystem::path ConfigurationStore::listDirectory() const {
    return listFolder(root_);
}

}  // namespace store
