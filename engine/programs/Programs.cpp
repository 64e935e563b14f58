#include "engine/programs/Programs.h"

#include <QString>
#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <string_view>

#include "engine/programs/FileTree.h"
#include "engine/programs/Launch.h"
#include "platform/desktop/DataDirectories.h"
#include "platform/desktop/DesktopEntry.h"
#include "platform/desktop/KeyFile.h"

namespace engine {

namespace {

using Arguments = std::vector<std::string>;

struct App {
    std::string name;
    Arguments arguments;
    Launch launch;
};

// By identifier, in alphabetical order.
using Apps = std::map<std::string, App>;

Launch unknown(std::string reason) {
    return {{}, std::move(reason)};
}

Launch flatpak(const std::string& id) {
    return {{{Program{.path = {}, .command = {}, .flatpak = id, .snap = {}}, "flatpak\n" + id}}, {}};
}

Launch snap(const std::string& instance) {
    return {{{Program{.path = {}, .command = {}, .flatpak = {}, .snap = instance}, "snap\n" + instance}}, {}};
}

std::string nameOf(std::string_view path) {
    return std::filesystem::path(path).filename().string();
}

// `flatpak run [--option=value]... ID [argument]...`, as Flatpak exports its entries. The key, where there is one, has
// to agree.
std::optional<Launch> launchOfFlatpak(const Arguments& words, const std::string& key) {
    const auto program = std::ranges::find_if(words, [](const std::string& word) { return nameOf(word) == "flatpak"; });
    if (program == words.end() || program + 1 == words.end() || *(program + 1) != "run") return {};
    const auto id = std::find_if(program + 2, words.end(), [](const auto& word) { return !word.starts_with('-'); });
    if (id == words.end() || (!key.empty() && *id != key)) return unknown("its Flatpak cannot be told");
    return flatpak(*id);
}

// `/snap/bin/NAME[.COMMAND]`, whatever stands before it.
std::optional<Launch> launchOfSnap(const Arguments& words, const std::string& key) {
    for (const std::string& word : words) {
        const std::string folder = std::filesystem::path(word).parent_path().string();
        if (folder != "/snap/bin" && folder != "/var/lib/snapd/snap/bin") continue;
        const std::string name = nameOf(word);
        const std::string instance = name.substr(0, name.find('.'));
        if (instance.empty() || (!key.empty() && key != instance)) return unknown("its Snap cannot be told");
        return snap(instance);
    }
    return {};
}

Launch launchOf(const platform::KeyFile& entry, Arguments& arguments, const FileTree& tree) {
    const auto text = [&](const char* key) { return entry.string("Desktop Entry", key).toStdString(); };
    const std::string tried = text("TryExec");
    if (!tried.empty() && !tree.executable(tried)) return unknown(tried + " is not installed");
    arguments = argumentsOfExec(text("Exec"));
    if (auto launch = launchOfFlatpak(arguments, text("X-Flatpak"))) return *std::move(launch);
    if (auto launch = launchOfSnap(arguments, text("X-SnapInstanceName"))) return *std::move(launch);
    Arguments followed = arguments;
    const bool isRelative =
        !followed.empty() && !followed.front().starts_with('/') && followed.front().find('/') != std::string::npos;
    if (isRelative) followed.front() = (std::filesystem::path(text("Path")) / followed.front()).string();
    return follow(followed, tree);
}

// All that a person can choose from. An entry that is not listed opens a file or a disk in a listed app.
Apps readApps(const std::filesystem::path& root) {
    constexpr std::array<std::string_view, 6> keysOfUse{"Exec",     "TryExec",   "Path",
                                                        "Encoding", "X-Flatpak", "X-SnapInstanceName"};
    const FileTree tree(root);
    const auto catalog = platform::readDesktopCatalog(platform::sharedDataDirectories(root), {});
    Apps apps;
    for (auto item = catalog.cbegin(); item != catalog.cend(); ++item) {
        const platform::DesktopEntry& entry = *item.value();
        if (!entry.listed) continue;
        const auto bytes = platform::readRegularFile(entry.file, platform::KeyFile::longestFile);
        if (!bytes) continue;
        const auto keys =
            platform::KeyFile::parse({bytes->constData(), static_cast<std::size_t>(bytes->size())}, keysOfUse);
        if (!keys) continue;
        App& app = apps[item.key().toStdString()];
        app.name = entry.name.toStdString();
        app.launch = launchOf(*keys, app.arguments, tree);
    }
    return apps;
}

bool shareAProgram(const App& one, const App& other) {
    return std::ranges::any_of(one.launch.targets, [&](const Launch::Target& target) {
        return std::ranges::any_of(other.launch.targets, [&](const Launch::Target& another) {
            // A program that is recognised without its arguments is itself, whatever it is told to run.
            return target.identity == another.identity ||
                   (target.program.path == another.program.path && !target.program.path.empty() &&
                    (target.program.command.empty() || another.program.command.empty()));
        });
    });
}

// "firefox-esr-private" is a second entry of "firefox-esr".
bool isSecondEntry(std::string_view second, std::string_view first) {
    return second.size() > first.size() && second.starts_with(first) &&
           std::string_view("-._").find(second[first.size()]) != std::string_view::npos;
}

// The other apps that a program cannot be taken from. An app's own further entries are none of them, nor is the very
// same command line under another name that nobody has put under the firewall.
std::vector<std::string> sharersOf(const std::string& id, const Apps& apps, const std::set<std::string>& asked) {
    const App& app = apps.at(id);
    std::vector<std::string> sharers;
    for (const auto& [otherId, other] : apps) {
        if (otherId == id || !shareAProgram(app, other)) continue;
        const bool isSame = other.arguments == app.arguments && !asked.contains(otherId);
        if (!isSecondEntry(otherId, id) && !isSame) sharers.push_back(otherId);
    }
    return sharers;
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
    return text;
}

}  // namespace

Programs findPrograms(const std::vector<std::string>& apps, const std::filesystem::path& root) {
    const std::set<std::string> asked(apps.begin(), apps.end());
    const Apps installed = readApps(root);
    Programs programs;
    for (const std::string& id : asked) {
        const auto app = installed.find(id);
        if (app == installed.end()) {
            programs.unknown[id] = "it is not among the apps that are installed for everybody";
            continue;
        }
        const Launch& launch = app->second.launch;
        const std::vector<std::string> sharers = sharersOf(id, installed, asked);
        if (launch.targets.empty()) {
            programs.unknown[id] = launch.reason;
        } else if (!sharers.empty()) {
            programs.unknown[id] = "shared with " + joined(sharers);
        } else {
            for (const Launch::Target& target : launch.targets) programs.known[id].push_back(target.program);
            programs.names[id] = app->second.name;
        }
    }
    return programs;
}

}  // namespace engine
