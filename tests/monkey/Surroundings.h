#pragma once

#include <sys/stat.h>

#include "monkey/Random.h"
#include "monkey/Rights.h"
#include "store/Schema.h"
#include "store/plist/PropertyListFile.h"
#include "support/TestDevice.h"

namespace monkey {

namespace fs = std::filesystem;

// What other programs do to the device while the app runs: apps and their icons come and go, the files are written,
// damaged and removed, the engine logs, people put exports and host lists into their folders.
class Surroundings {
public:
    Surroundings(TestDevice& device, Random& random) : device_(device), random_(random) {
        fs::create_directories(icons_);
        for (int i = 0; i < apps / 2; ++i) installApp();
        for (const auto& [file, key] : Rights::everyFile)
            if (random_.chance(70)) replace(device_.path(file), contentOf(file));
        for (int i = 0; i < 3; ++i) {
            putExport();
            putHostList();
            changeIcon();
        }
    }

    // One of these things. Says what.
    std::string change() {
        static constexpr Weighted<std::string (Surroundings::*)()> deeds[] = {
            {2, &Surroundings::installApp},  {1, &Surroundings::uninstallApp}, {2, &Surroundings::changeIcon},
            {7, &Surroundings::changeFile},  {2, &Surroundings::plantKey},     {1, &Surroundings::switchFirewall},
            {1, &Surroundings::writeLog},    {1, &Surroundings::putExport},    {2, &Surroundings::putHostList},
            {1, &Surroundings::changeFolder}};
        return (this->*random_.weighted(deeds))();
    }

    bool isInstalled(std::string_view identifier) const { return fs::exists(entryOf(identifier)); }

private:
    static constexpr int apps = 30;

    // --- What they do

    std::string installApp() {
        const std::string app = anyApp();
        const std::string icons[] = {app, app, app, "/usr/share/icons/" + app, "../" + app, ""};
        replace(entryOf(app), "[Desktop Entry]\nType=Application\nName=" + anyName() +
                                  "\nExec=true\nIcon=" + random_.oneOf(icons) + "\n");
        return "install " + app;
    }

    std::string uninstallApp() {
        const std::string app = anyApp();
        fs::remove(entryOf(app));
        return "uninstall " + app;
    }

    std::string changeIcon() {
        const std::string width = random_.chance(20) ? "100000" : "32";
        return put(icons_ / (anyApp() + ".svg"), "<svg xmlns='http://www.w3.org/2000/svg' width='" + width +
                                                     "' height='32'><rect width='9' height='" + any(32) + "'/></svg>");
    }

    std::string changeFile() {
        const store::File file = anyFile();
        return put(device_.path(file), contentOf(file));
    }

    // A key that the app does not know, at the top or in a record.
    std::string plantKey() {
        const store::File file = anyFile();
        auto content = device_.plist(file);
        if (!content) return "plant nothing";
        const std::string key = "planted." + any(100);
        const std::string app = anyApp();
        auto record = store::AppRuleRecord::of(*content, app);
        record.dictionary().set(key, store::Value(anyHost()));
        if (file == store::File::appRules) record.storeIn(*content, app);
        if (file != store::File::appRules) content->set(key, store::Value(std::int64_t(random_.below(1000))));
        store::writeDictionary(device_.path(file), *content);
        return "plant " + key + " in " + device_.path(file).filename().string();
    }

    std::string switchFirewall() {
        const fs::path marker = device_.files().logFile().parent_path() / "com.Urmeld.Firewall.disabled";
        if (!fs::remove(marker)) replace(marker, "");
        return "switch the firewall";
    }

    std::string writeLog() {
        std::string text = random_.chance(50) ? "\xFF\xFE" : "";
        if (random_.chance(30)) return put(device_.files().logFile(), text + noise(random_.below(200)));
        for (int i = random_.below(10'000); i > 0; --i)
            text += {char(random_.chance(3) ? '\n' : random_.between(' ', '~')), '\0'};
        return put(device_.files().logFile(), text);
    }

    std::string putExport() {
        const std::string names[] = {"VxmSettings-1.plist", "mine.plist", "a\nb", std::string(200, 'x'), "\xE4.plist"};
        std::string entries;
        for (const auto& [file, key] : Rights::everyFile)
            if (random_.chance(70)) entries += entry(key, dictionaryOf(file));
        return put(device_.files().exportDirectory() / random_.oneOf(names),
                   "<plist version=\"1.0\">" + dictionary(entries) + "</plist>");
    }

    std::string putHostList() {
        std::string text;
        for (int i = random_.below(mostRules); i > 0; --i)
            text += random_.chance(30) ? anyHost() + "\r\n" : "h" + any(500) + "\n";
        return put(
            device_.files().listDirectory() / random_.oneOf({"hosts", "Banners", "list\t2", "\xFF\xFE", ".hidden"}),
            text);
    }

    std::string changeFolder() {
        const fs::path folder = random_.oneOf({device_.files().exportDirectory(), device_.files().listDirectory()});
        const bool isThere = fs::remove_all(folder) > 0;
        if (!isThere || random_.chance(60)) fs::create_directories(folder);
        return "empty or remove or make " + folder.filename().string();
    }

    // Mostly all of it, or else what is damaged, what is no file, or nothing.
    std::string put(const fs::path& path, const std::string& content) {
        const std::string name = path.filename();
        const int drawn = random_.below(10);
        if (!fs::exists(path.parent_path())) return "no place for " + name;
        if (drawn < 2) fs::remove_all(path);
        if (drawn == 0) return "remove " + name;
        if (drawn == 1) {
            random_.chance(50) ? fs::create_directory(path) : mkfifo(path.c_str(), 0600) == 0;
            return "block " + name;
        }
        const std::string damaged = drawn == 2 ? noise(random_.below(300)) : content.substr(0, content.size() / 2);
        replace(path, drawn < 4 ? damaged : content);
        return (drawn < 4 ? "damage " : "write ") + name;
    }

    // In one step, as everybody who shares a file should; whatever was there is gone.
    void replace(const fs::path& path, const std::string& bytes) {
        const fs::path beside = path.parent_path() / "on its way";
        device_.putBytes(beside, bytes);
        if (fs::is_directory(fs::symlink_status(path))) fs::remove_all(path);
        fs::rename(beside, path);
    }

    fs::path entryOf(std::string_view app) const {
        return device_.device().root / "usr/share/applications" / (std::string(app) + ".desktop");
    }

    // --- Contents

    static constexpr int mostRules = 40;

    static std::string entry(std::string_view key, const std::string& value) {
        return "<key>" + std::string(key) + "</key>\n\t" + value;
    }
    static std::string dictionary(const std::string& entries) { return "<dict>" + entries + "</dict>"; }
    static std::string string(const std::string& text) { return "<string>" + text + "</string>"; }

    std::string rules() {
        std::string array = "<array>";
        for (int i = random_.below(mostRules); i > 0; --i) {
            std::string rule = entry("rule", string(random_.chance(30) ? anyHost() : "h" + any(100) + ".example"));
            if (random_.chance(80))
                rule += entry("date", "<date>20" + std::to_string(random_.between(10, 20)) + "-05-04T17:03:09Z</date>");
            if (random_.chance(10)) rule += entry("note", "<integer>" + std::to_string(i) + "</integer>");
            array += dictionary(rule);
            if (random_.chance(3)) array += string("no rule");
        }
        return array + "</array>";
    }

    std::string record() {
        if (random_.chance(3)) return string("no record");
        std::string entries;
        for (const std::string_view key : {store::keys::allow, store::keys::deny})
            if (random_.chance(70)) entries += entry(key, rules());
        if (random_.chance(70)) entries += entry(store::keys::allowEverything, string(any(4)));
        entries += flags(store::keys::appSwitches, 40);
        return dictionary(entries + flags(std::array{store::keys::enabled, std::string_view("planted")}, 40));
    }

    template <class Keys>
    std::string flags(const Keys& keys, int percent) {
        std::string entries;
        for (const std::string_view key : keys)
            if (random_.chance(percent))
                entries +=
                    entry(key, random_.oneOf({"<true/>", "<false/>", "<string>odd</string>", "<integer>1</integer>"}));
        return entries;
    }

    std::string dictionaryOf(store::File file) {
        namespace keys = store::keys;
        std::string entries;
        if (file != store::File::guiSettings) entries += flags(std::array{keys::marker}, 60);
        if (file == store::File::appRules) {
            for (int i = 0; i < apps; ++i)
                if (random_.chance(30)) entries += entry("org.example.app" + std::to_string(i), record());
            if (random_.chance(30)) entries += entry(keys::gameCenterDaemon, record());
        } else if (file == store::File::globalRules) {
            for (const std::string_view key : {keys::globalAllow, keys::globalDeny})
                if (random_.chance(80)) entries += entry(key, rules());
            entries += flags(keys::globalSwitches, 50);
        } else {
            entries += flags(std::array{keys::showAllowHelp, keys::didShowEditAlert}, 60);
        }
        if (random_.chance(30)) entries += entry("planted", "<data>AAEC</data>");
        return dictionary(entries);
    }

    std::string contentOf(store::File file) {
        return "<?xml version=\"1.0\"?>\n<plist version=\"1.0\">" + dictionaryOf(file) + "</plist>\n";
    }

    std::string noise(int bytes) {
        std::string text(std::size_t(bytes), 0);
        for (char& byte : text) byte = char(random_.below(256));
        return text;
    }

    store::File anyFile() { return random_.oneOf(Rights::everyFile).first; }
    std::string any(int count) { return std::to_string(random_.below(count)); }
    std::string anyApp() { return "org.example.app" + any(apps); }
    std::string anyName() {
        static const std::string names[] = {"Zebra",
                                            "äpfel",
                                            "App 10",
                                            "App 9",
                                            "zebra",
                                            "עברית",
                                            "\U0001F43B\u200D\u2744\uFE0F",
                                            "I",
                                            "ı",
                                            std::string(300, 'w'),
                                            "  spaces  ",
                                            "Ünder & <tags>",
                                            "naïve",
                                            "nai\u0308ve"};
        return random_.oneOf(names) + (random_.chance(50) ? std::to_string(random_.below(50)) : "");
    }
    std::string anyHost() {
        return random_.oneOf({"a.example", "*b.example:80", "ä.example", "10.0.0.1", "", "[::1]", "&amp;.example"});
    }

    TestDevice& device_;
    Random& random_;
    fs::path icons_ = device_.device().root / "usr/share/icons/hicolor/scalable/apps";
};

}  // namespace monkey
