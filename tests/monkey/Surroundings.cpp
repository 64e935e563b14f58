#include "monkey/Surroundings.h"

#include <sys/stat.h>

#include <array>
#include <fstream>
#include <vector>

#include "store/Schema.h"
#include "store/plist/PropertyListFile.h"
#include "support/TestDevice.h"

namespace fs = std::filesystem;

namespace monkey {

namespace {

constexpr int apps = 30;
constexpr int mostRules = 40;
constexpr int longestLog = 20'000;
constexpr int longestNoise = 200;  // hardly a character of it is in the first font
constexpr std::array everyFile{store::File::appRules, store::File::globalRules, store::File::guiSettings};

const std::string someNames[] = {"Zebra",
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
const std::string someHosts[] = {"a.example", "*b.example:80", "ä.example", "10.0.0.1", "", "[::1]", "&amp;.example"};

constexpr const char* flags[] = {"<true/>", "<false/>", "<string>odd</string>", "<integer>1</integer>"};

}  // namespace

Surroundings::Surroundings(TestDevice& device, Random& random) : device_(device), random_(random) {
    for (int i = 0; i < apps / 2; ++i) installApp();
    for (const store::File file : everyFile)
        if (random_.chance(70)) put(device_.path(file), contentOf(file));
    for (int i = 0; i < 3; ++i) {
        putExport();
        putHostList();
        changeIcon();
    }
}

std::string Surroundings::change() {
    using Deed = std::string (Surroundings::*)();
    static constexpr std::array<Deed, 20> deeds{
        &Surroundings::installApp,  &Surroundings::installApp,  &Surroundings::uninstallApp,
        &Surroundings::changeIcon,  &Surroundings::changeIcon,  &Surroundings::writeFile,
        &Surroundings::writeFile,   &Surroundings::writeFile,   &Surroundings::writeFile,
        &Surroundings::plantKey,    &Surroundings::plantKey,    &Surroundings::damageFile,
        &Surroundings::removeFile,  &Surroundings::blockFile,   &Surroundings::switchFirewall,
        &Surroundings::writeLog,    &Surroundings::putExport,   &Surroundings::putHostList,
        &Surroundings::putHostList, &Surroundings::changeFolder};
    return (this->*random_.oneOf(deeds))();
}

bool Surroundings::isInstalled(std::string_view identifier) const {
    return fs::exists(applications() / (std::string(identifier) + ".desktop"));
}

std::string Surroundings::installApp() {
    const std::string app = anyApp();
    const std::string icons[] = {app, app, app, "/usr/share/icons/" + app, "../" + app, ""};
    put(applications() / (app + ".desktop"),
        "[Desktop Entry]\nType=Application\nName=" + anyName() + "\nExec=true\nIcon=" + random_.oneOf(icons) + "\n");
    return "install " + app;
}

std::string Surroundings::uninstallApp() {
    const std::string app = anyApp();
    fs::remove(applications() / (app + ".desktop"));
    return "uninstall " + app;
}

std::string Surroundings::changeIcon() {
    const std::string app = anyApp();
    const fs::path icon = device_.device().root / "usr/share/icons/hicolor/scalable/apps" / (app + ".svg");
    const int size = random_.chance(20) ? 100'000 : 32;
    const std::string image = "<svg xmlns='http://www.w3.org/2000/svg' width='" + std::to_string(size) +
                              "' height='32'><rect width='9' height='" + std::to_string(random_.below(32)) +
                              "'/></svg>";
    switch (random_.below(6)) {
        case 0:
            fs::remove_all(icon);
            return "remove the icon of " + app;
        case 1:
            block(icon);
            return "block the icon of " + app;
        case 2:
            put(icon, random_.chance(50) ? noise(200) : image.substr(0, image.size() / 2));
            return "break the icon of " + app;
        default:
            put(icon, image);
            return "draw the icon of " + app;
    }
}

std::string Surroundings::writeFile() {
    const store::File file = anyFile();
    put(device_.path(file), contentOf(file));
    return "write " + device_.path(file).filename().string();
}

// A key that the app does not know, at the top or in a record.
std::string Surroundings::plantKey() {
    const store::File file = anyFile();
    auto content = device_.plist(file);
    if (!content) return "plant nothing";
    const std::string key = "planted." + std::to_string(random_.below(100));
    const std::string app = anyApp();
    if (file == store::File::appRules) {
        auto held = store::AppRuleRecord::of(*content, app);
        held.dictionary().set(key, store::Value(random_.oneOf(someHosts)));
        held.storeIn(*content, app);
    } else {
        content->set(key, store::Value(std::int64_t(random_.below(1000))));
    }
    store::writeDictionary(device_.path(file), *content);
    return "plant " + key + " in " + device_.path(file).filename().string();
}

std::string Surroundings::damageFile() {
    const store::File file = anyFile();
    const std::string content = contentOf(file);
    put(device_.path(file), random_.chance(30) ? noise(random_.below(300)) : content.substr(0, content.size() / 2));
    return "damage " + device_.path(file).filename().string();
}

std::string Surroundings::removeFile() {
    const store::File file = anyFile();
    fs::remove_all(device_.path(file));
    return "remove " + device_.path(file).filename().string();
}

std::string Surroundings::blockFile() {
    const store::File file = anyFile();
    block(device_.path(file));
    return "block " + device_.path(file).filename().string();
}

std::string Surroundings::switchFirewall() {
    const fs::path marker = device_.files().exportDirectory().parent_path() / "com.Urmeld.Firewall.disabled";
    if (!fs::remove(marker)) put(marker, "");
    return "switch the firewall";
}

std::string Surroundings::writeLog() {
    if (random_.chance(15)) {
        block(device_.files().logFile());
        return "block the log";
    }
    std::string text = random_.chance(50) ? "\xFF\xFE" : "";
    if (random_.chance(30)) {
        text += noise(random_.below(longestNoise));
    } else {
        for (int i = random_.below(longestLog / 2); i > 0; --i)
            text += {char(random_.chance(3) ? '\n' : random_.between(' ', '~')), '\0'};
    }
    put(device_.files().logFile(), text);
    return "write a log of " + std::to_string(text.size()) + " bytes";
}

std::string Surroundings::putExport() {
    const fs::path folder = device_.files().exportDirectory();
    const std::string names[] = {"VxmSettings-1.plist", "mine.plist", "a\nb", std::string(200, 'x'), "\xE4.plist"};
    const fs::path path = folder / random_.oneOf(names);
    std::string all = "<plist version=\"1.0\"><dict>";
    const auto add = [&](std::string_view key, store::File file) {
        const std::string content = contentOf(file);
        const auto begin = content.find("<dict>");
        if (random_.chance(70))
            all += "<key>" + std::string(key) + "</key>" + content.substr(begin, content.rfind("</plist>") - begin);
    };
    add(store::keys::appRules, store::File::appRules);
    add(store::keys::globalRules, store::File::globalRules);
    add(store::keys::settings, store::File::guiSettings);
    all += "</dict></plist>";
    if (!fs::exists(folder)) return "put no export";
    if (random_.chance(15)) {
        block(path);
    } else {
        put(path, random_.chance(15) ? all.substr(0, all.size() / 2) : all);
    }
    return "put an export";
}

std::string Surroundings::putHostList() {
    const fs::path folder = device_.files().listDirectory();
    const std::string names[] = {"hosts", "Banners", "list\t2", "\xFF\xFE", ".hidden"};
    const fs::path path = folder / random_.oneOf(names);
    std::string text;
    for (int i = random_.below(mostRules); i > 0; --i)
        text +=
            random_.chance(30) ? random_.oneOf(someHosts) + "\r\n" : "h" + std::to_string(random_.below(500)) + "\n";
    if (!fs::exists(folder)) return "put no host list";
    if (random_.chance(15)) {
        block(path);
    } else {
        put(path, random_.chance(15) ? noise(500) : text);
    }
    return "put a host list";
}

std::string Surroundings::changeFolder() {
    const fs::path folders[] = {device_.files().exportDirectory(), device_.files().listDirectory()};
    const fs::path folder = random_.oneOf(folders);
    const bool isThere = fs::remove_all(folder) > 0;
    if (!isThere || random_.chance(60)) fs::create_directories(folder);
    return "empty or remove or make " + folder.filename().string();
}

store::File Surroundings::anyFile() {
    return random_.oneOf(everyFile);
}

std::string Surroundings::anyApp() {
    return "org.example.app" + std::to_string(random_.below(apps));
}

std::string Surroundings::anyName() {
    return random_.oneOf(someNames) + (random_.chance(50) ? std::to_string(random_.below(50)) : "");
}

std::string Surroundings::rules() {
    std::string array = "<array>";
    for (int i = random_.below(mostRules); i > 0; --i) {
        array += "<dict><key>rule</key><string>";
        array += random_.chance(30) ? random_.oneOf(someHosts) : "h" + std::to_string(random_.below(100)) + ".example";
        array += "</string>";
        if (random_.chance(80))
            array += "<key>date</key><date>20" + std::to_string(random_.between(10, 20)) + "-05-04T17:03:09Z</date>";
        if (random_.chance(10)) array += "<key>note</key><integer>" + std::to_string(i) + "</integer>";
        array += "</dict>";
        if (random_.chance(3)) array += "<string>no rule</string>";
    }
    return array + "</array>";
}

std::string Surroundings::record() {
    if (random_.chance(3)) return "<string>no record</string>";
    std::string entries = "<dict>";
    for (const std::string_view key : {store::keys::allow, store::keys::deny})
        if (random_.chance(70)) entries += "<key>" + std::string(key) + "</key>" + rules();
    if (random_.chance(70))
        entries += "<key>allowEverything</key><string>" + std::to_string(random_.below(4)) + "</string>";
    std::vector<std::string_view> flagged(store::keys::appSwitches.begin(), store::keys::appSwitches.end());
    flagged.insert(flagged.end(), {store::keys::enabled, "planted"});
    for (const std::string_view key : flagged)
        if (random_.chance(40)) entries += "<key>" + std::string(key) + "</key>" + random_.oneOf(flags);
    return entries + "</dict>";
}

std::string Surroundings::contentOf(store::File file) {
    std::string entries;
    const auto add = [&](std::string_view key, const std::string& value) {
        entries += "<key>" + std::string(key) + "</key>\n\t" + value;
    };
    if (random_.chance(60) && file != store::File::guiSettings) add(store::keys::marker, random_.oneOf(flags));
    if (file == store::File::appRules) {
        for (int i = 0; i < apps; ++i)
            if (random_.chance(30)) add("org.example.app" + std::to_string(i), record());
        if (random_.chance(30)) add(store::keys::gameCenterDaemon, record());
    } else if (file == store::File::globalRules) {
        for (const std::string_view key : {store::keys::globalAllow, store::keys::globalDeny})
            if (random_.chance(80)) add(key, rules());
        for (const std::string_view key : store::keys::globalSwitches)
            if (random_.chance(50)) add(key, random_.oneOf(flags));
    } else {
        for (const std::string_view key : {store::keys::showAllowHelp, store::keys::didShowEditAlert})
            if (random_.chance(60)) add(key, random_.oneOf(flags));
    }
    if (random_.chance(30)) add("planted", "<data>AAEC</data>");
    return "<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><dict>" + entries + "</dict></plist>\n";
}

std::string Surroundings::noise(int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += char(random_.below(256));
    return text;
}

fs::path Surroundings::applications() const {
    return device_.device().root / "usr/share/applications";
}

void Surroundings::put(const fs::path& path, const std::string& bytes) {
    const fs::path beside = path.parent_path() / "on its way";
    fs::create_directories(path.parent_path());
    device_.putBytes(beside, bytes);
    if (fs::is_directory(fs::symlink_status(path))) fs::remove_all(path);
    fs::rename(beside, path);
}

void Surroundings::block(const fs::path& path) {
    fs::create_directories(path.parent_path());
    fs::remove_all(path);
    if (random_.chance(50)) {
        fs::create_directory(path);
    } else {
        mkfifo(path.c_str(), 0600);
    }
}

}  // namespace monkey
