#include "benchmarks/DeviceFolder.h"

#include <chrono>
#include <fstream>

#include "benchmarks/Random.h"
#include "benchmarks/Texts.h"
#include "store/Schema.h"
#include "store/plist/PropertyList.h"
#include "store/text/IcuText.h"

namespace bench {

namespace {

namespace fs = std::filesystem;

// One in a hundred stands there once more, as lists have it that were imported twice.
constexpr std::size_t repeatEvery = 100;
constexpr store::Date firstDate{std::chrono::sys_days{std::chrono::year{2013} / 5 / 4}};

store::Value entry(const std::string& host, std::size_t number) {
    store::Dictionary entry;
    entry.set(store::keys::rule, store::Value(host));
    entry.set(store::keys::date, store::Value(firstDate + std::chrono::seconds(number * 37)));
    return store::Value(std::move(entry));
}

store::Array entries(const std::vector<std::string>& hosts) {
    store::Array entries;
    entries.reserve(hosts.size() + hosts.size() / repeatEvery);
    for (std::size_t number = 0; number < hosts.size(); ++number) {
        entries.push_back(entry(hosts[number], number));
        if (number % repeatEvery == repeatEvery - 1) entries.push_back(entry(hosts[number / 2], number));
    }
    return entries;
}

fs::path withFolders(fs::path root) {
    for (const char* folder : {"var/mobile/Library/Preferences/Vxm", "Applications/VexmorGUI.app/Lists",
                               "usr/share/applications", "usr/share/icons/hicolor"})
        fs::create_directories(root / folder);
    return root;
}

}  // namespace

DeviceFolder::DeviceFolder(fs::path root) : root_(withFolders(std::move(root))), files_(root_, notifyCenter_) {
    store::Dictionary flags;
    flags.set(store::keys::showAllowHelp, store::Value(false));
    flags.set(store::keys::didShowEditAlert, store::Value(true));
    files_.replace(store::File::guiSettings, flags);
}

void DeviceFolder::putApp(const std::string& identifier, const fs::path& program) {
    std::ofstream(root_ / "usr/share/applications" / (identifier + ".desktop"))
        << "[Desktop Entry]\nType=Application\nName=" << identifier << "\nExec=" << program.string() << '\n';
    store::Dictionary apps;
    store::AppRuleRecord::fresh().storeIn(apps, identifier);
    files_.replace(store::File::appRules, apps);
}

void DeviceFolder::putRules(const std::vector<std::string>& hosts) {
    store::Dictionary rules;
    rules.set(store::keys::marker, store::Value(true));
    rules.set(store::keys::globalAllow, store::Value(entries({"example.net", "*example.org"})));
    rules.set(store::keys::globalDeny, store::Value(entries(hosts)));
    files_.replace(store::File::globalRules, rules);
}

void DeviceFolder::putHostList(const std::vector<std::string>& hosts) {
    writeLines(files_.listDirectory() / "hosts.txt", hosts);
}

void DeviceFolder::putLog(std::size_t bytes) {
    constexpr std::size_t different = 1000;
    std::u16string lines;
    std::size_t second = 0;
    for (const std::string& host : hosts(different)) {
        lines += store::utf16("2013-05-04 17:" + std::to_string(second / 60 % 60) + ':' + std::to_string(second % 60) +
                              " com.example.browser[" + std::to_string(200 + second) + "] " +
                              (second % 3 ? "denied " : "allowed ") + host + "\n");
        ++second;
    }
    std::ofstream log(files_.logFile(), std::ios::binary);
    log.write("\xFF\xFE", 2);
    for (std::size_t written = 2; written < bytes; written += lines.size() * sizeof(char16_t))
        log.write(reinterpret_cast<const char*>(lines.data()),
                  static_cast<std::streamsize>(lines.size() * sizeof(char16_t)));
}

void writeLines(const fs::path& file, const std::vector<std::string>& lines) {
    std::ofstream output(file, std::ios::binary);
    for (const std::string& line : lines) output << line << '\n';
}

}  // namespace bench
