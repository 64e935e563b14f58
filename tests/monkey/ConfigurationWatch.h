#pragma once

#include "monkey/Rights.h"
#include "platform/desktop/RegularFile.h"
#include "store/ConfigurationStore.h"
#include "store/Files.h"
#include "store/files/Temporaries.h"

namespace monkey {

namespace fs = std::filesystem;

// Looks at the files after every event: each is entire, and only what somebody may change has changed. What was
// replaced by something that was not made from it has been kept; nothing lies about.
class ConfigurationWatch {
public:
    using IsInstalled = std::function<bool(std::string_view identifier)>;

    ConfigurationWatch(const store::ConfigurationStore& files, IsInstalled isInstalled)
        : files_(files), isInstalled_(std::move(isInstalled)) {
        accept();
    }

    // Takes the files as they are: somebody else has changed them, or the app has just created them.
    void accept() {
        for (const auto& [file, key] : Rights::everyFile) known(file) = read(file);
        paths_ = listed();
    }

    // What is wrong with what has happened since while these screens were seen; empty when nothing is.
    std::string check(const Sights& seen) {
        for (const auto& [file, key] : Rights::everyFile)
            if (std::string finding = checkFile(file, seen); !finding.empty()) return nameOf(file) + " " + finding;
        return checkFolders(seen);
    }

    // Files that the app has written, by their names.
    inline static std::map<std::string, long> writes;

private:
    struct Known {
        std::optional<platform::FileStamp> stamp;
        bool isRegular = false;
        std::string bytes;
        std::optional<store::Dictionary> dictionary;
    };
    using Paths = std::set<fs::path>;
    static constexpr std::string_view anyone = "anyone";

    Known& known(store::File file) { return known_[std::size_t(file)]; }
    std::string nameOf(store::File file) const { return files_.path(file).filename(); }

    Known read(store::File file) {
        const fs::path path = files_.path(file);
        Known now{platform::stampOf(path), platform::isRegularFile(path), {}, {}};
        if (now.stamp == known(file).stamp) return known(file);
        if (!now.isRegular) return now;
        now.bytes = store::contentOf(path);
        now.dictionary = store::readRuleFile(path);
        return now;
    }

    std::string checkFile(store::File file, const Sights& seen) {
        Known now = read(file);
        if (now.stamp == known(file).stamp) return {};
        const Known before = std::exchange(known(file), now);
        ++writes[nameOf(file)];
        if (!now.stamp) return "is gone";
        if (!now.isRegular) return "is no file any more";
        if (before.stamp && !before.isRegular) return "was no file and is one now";
        if (!now.dictionary) return "is not entire";

        const bool wasDamaged = before.stamp && !before.dictionary;
        const std::string refused =
            refusedChanges(file, before.dictionary.value_or(store::Dictionary()), *now.dictionary, seen);
        if (refused.empty() && !wasDamaged) return {};
        if (!refused.empty() && !Rights::allowReplacing(seen, file, *now.dictionary, files_.exportDirectory())) {
            std::string screens;
            for (const Sight& sight : seen) screens += " " + sight.screen + " " + sight.bundleIdentifier;
            return "has changed at" + refused + " while" + screens + " was seen";
        }
        const std::string kept =
            files_.path(file).string() + std::string(wasDamaged ? store::damagedSuffix : store::previousSuffix);
        return !before.stamp || store::contentOf(kept) == before.bytes ? "" : "was not kept as " + kept;
    }

    std::string refusedChanges(store::File file, const store::Dictionary& before, const store::Dictionary& now,
                               const Sights& seen) const {
        std::string refused;
        for (const std::string_view key : Rights::keysOf(before, now)) {
            const Rights::Change change{file, key, before.find(key), now.find(key)};
            if (!Rights::isSame(change.before, change.after) && !Rights::allow(seen, change, isInstalled_))
                refused += " " + std::string(key) + " from " + text(change.before) + " to " + text(change.after);
        }
        return refused;
    }

    // Enough of it to know it by.
    static std::string text(const store::Value* value) {
        return value ? std::string(Rights::textOf(*value).substr(0, 1000)) : "nothing";
    }

    std::string checkFolders(const Sights& seen) {
        const Paths before = std::exchange(paths_, listed());
        Paths changed;
        std::ranges::set_symmetric_difference(before, paths_, std::inserter(changed, changed.end()));
        for (const fs::path& path : changed)
            if (const std::string_view by = ownerOf(path); by != anyone && !wasSeen(seen, by))
                return path.string() + " has come or gone";
        return {};
    }

    // The screen that may let it come or go.
    std::string_view ownerOf(const fs::path& path) const {
        const bool isExport = path.parent_path() == files_.exportDirectory();
        if (isExport && !store::isTemporaryName(path.filename().string())) return "VxmImportExportViewController";
        if (path.filename() == "com.Urmeld.Firewall.disabled") return "VxmSettingsViewController";
        if (path == files_.logFile()) return "VxmLogViewController";
        for (const auto& [file, key] : Rights::everyFile)
            for (const std::string_view suffix : {std::string_view(), store::damagedSuffix, store::previousSuffix})
                if (path == files_.path(file).string() + std::string(suffix)) return anyone;
        return path == files_.exportDirectory() ? anyone : "nobody";
    }

    Paths listed() const {
        Paths paths;
        std::error_code none;
        const fs::path exports = files_.exportDirectory();
        for (const fs::path& folder : {exports.parent_path(), exports, files_.listDirectory()})
            for (const auto& entry : fs::directory_iterator(folder, none)) paths.insert(entry.path());
        return paths;
    }

    const store::ConfigurationStore& files_;
    IsInstalled isInstalled_;
    std::array<Known, 3> known_;
    Paths paths_;
};

}  // namespace monkey
