#include "store/faults/Changes.h"

#include <sys/xattr.h>

#include <memory>
#include <string>
#include <string_view>

#include "store/ConfigurationStore.h"
#include "store/Files.h"
#include "store/NotifyCenter.h"
#include "store/Schema.h"
#include "store/plist/PropertyListFile.h"
#include "store/rules/AppendedRules.h"

namespace store {

namespace {

constexpr std::string_view app = "com.example.app";
constexpr File everyFile[] = {File::appRules, File::globalRules, File::guiSettings};
constexpr std::size_t someBytes = 20'000;
constexpr std::size_t manyBytes = 9'000'000;  // more than is written at once

struct NobodyListens : NotifyCenter {
    void post(std::string_view) override {}
};

// `size` bytes of rules under both kinds of key.
std::string textOf(std::size_t size) {
    std::string rules = "<array>";
    for (int i = 0; rules.size() < size; ++i)
        rules += "<dict><key>date</key><date>2013-05-04T17:03:09Z</date><key>rule</key><string>host" +
                 std::to_string(i) + ".example</string></dict>";
    return "<dict><key>" + std::string(app) + "</key><dict><key>allow</key>" + rules +
           "</array></dict><key>com.example.gone</key><dict/><key>globalDeny</key><array><dict/></array></dict>";
}

std::string contentFor(Held held) {
    static const std::string rules = textOf(someBytes);
    if (held == Held::manyRules) return textOf(manyBytes);
    return held == Held::damage ? rules.substr(0, rules.size() / 2) : rules;
}

void changeRecord(ConfigurationStore& store, const Writer& writer, void (*set)(AppRuleRecord&)) {
    store.change(writer, [&](Dictionary& rules) {
        AppRuleRecord record = AppRuleRecord::of(rules, app);
        set(record);
        record.storeIn(rules, app);
    });
}

void setFlag(ConfigurationStore& store, const Writer& writer, std::string_view key) {
    store.change(writer, [&](Dictionary& file) { file.set(key, Value(true)); });
}

void prune(ConfigurationStore& store) {
    store.change(writers::pruneApps, [](Dictionary& rules) { rules.remove("com.example.gone"); });
}
void addApp(ConfigurationStore& store) {
    store.change(writers::addApp, [](Dictionary& rules) { AppRuleRecord::fresh().storeIn(rules, "com.example.new"); });
}
void deleteApp(ConfigurationStore& store) {
    store.change(writers::deleteApp, [](Dictionary& rules) { rules.remove(app); });
}
void enableApp(ConfigurationStore& store) {
    changeRecord(store, writers::appEnabled, [](AppRuleRecord& record) { record.setEnabled(true); });
}
void disableApp(ConfigurationStore& store) {
    changeRecord(store, writers::appDisabled, [](AppRuleRecord& record) { record.setEnabled(false); });
}
void switchApp(ConfigurationStore& store) {
    changeRecord(store, writers::appSwitch, [](AppRuleRecord& record) { record.setBlanketMode(BlanketMode::denyAll); });
}
void changeGlobalList(ConfigurationStore& store) {
    store.change(writers::globalRuleList, [](Dictionary& rules) { rules.set(keys::globalAllow, Value(Array())); });
}
void changeAppList(ConfigurationStore& store) {
    changeRecord(store, writers::appRuleList, [](AppRuleRecord& record) { record.dictionary().remove(keys::allow); });
}
void setGuiFlag(ConfigurationStore& store) {
    setFlag(store, writers::guiFlag, keys::didShowEditAlert);
}
void setGlobalSwitch(ConfigurationStore& store) {
    setFlag(store, writers::globalSwitch, keys::log);
}
void importList(ConfigurationStore& store) {
    store.change(writers::listImport, [](Dictionary& rules) {
        const Value* list = rules.find(keys::globalDeny);
        rules.set(keys::globalDeny, Value(std::make_shared<AppendedRules>(list, "one.example\ntwo.example")));
    });
}
void firstUse(ConfigurationStore& store) {
    store.createAppRulesFileIfMissing();
}
void deleteAll(ConfigurationStore& store) {
    store.deleteAllRulesAndSettings();
}
void importSettings(ConfigurationStore& store) {
    Dictionary imported;
    imported.set("imported", Value(true));
    for (File file : everyFile) store.replace(file, imported);
}
void exportSettings(ConfigurationStore& store) {
    Dictionary all;
    if (auto rules = store.read(File::appRules)) all.set(keys::appRules, Value(*std::move(rules)));
    if (!all.empty()) writeDictionary(store.exportDirectory() / "VxmSettings.plist", all);
}
void switchOff(ConfigurationStore& store) {
    store.setDisabled(true);
}
void switchOn(ConfigurationStore& store) {
    store.setDisabled(false);
}

}  // namespace

const std::vector<Change>& everyChange() {
    using enum Held;
    static const std::vector<Change> changes = {
        {"prune", rules, prune},
        {"add an app", rules, addApp},
        {"delete an app", rules, deleteApp},
        {"enable an app", rules, enableApp},
        {"disable an app", rules, disableApp},
        {"an app's switch", rules, switchApp},
        {"a global list", rules, changeGlobalList},
        {"an app's list", rules, changeAppList},
        {"a flag", rules, setGuiFlag},
        {"a flag, no file", nothing, setGuiFlag},
        {"a flag, damaged file", damage, setGuiFlag},
        {"a global switch", rules, setGlobalSwitch},
        {"a global switch, no file", nothing, setGlobalSwitch},
        {"a global switch, damaged file", damage, setGlobalSwitch},
        {"import a list", rules, importList},
        {"import a list, no file", nothing, importList},
        {"import a list, many rules", manyRules, importList},
        {"first use", nothing, firstUse},
        {"first use, rules there", rules, firstUse},
        {"delete all", rules, deleteAll},
        {"delete all, no files", nothing, deleteAll},
        {"delete all, damaged files", damage, deleteAll},
        {"delete all, files of others", rulesOfOthers, deleteAll},
        {"import settings", rules, importSettings},
        {"import settings, files of others", rulesOfOthers, importSettings},
        {"import settings, no files", nothing, importSettings},
        {"import settings, damaged files", damage, importSettings},
        {"export", rules, exportSettings},
        {"switch off", nothing, switchOff},
        {"switch on", rules, switchOn},
    };
    return changes;
}

void prepare(const std::filesystem::path& root, Held held) {
    NobodyListens nobody;
    ConfigurationStore store(root, nobody);
    std::filesystem::create_directories(store.exportDirectory());
    if (held == Held::nothing) return;
    const std::string content = contentFor(held);
    for (File file : everyFile) {
        put(store.path(file), content);
        put(store.path(file).string() + ".previous", "an earlier generation");
        // Keeping attributes is part of a change. A file system in memory has only those of the second kind.
        for (const char* attribute : {"user.vexmor.test", "trusted.vexmor.test"})
            setxattr(store.path(file).c_str(), attribute, "x", 1, 0);
    }
    store.setDisabled(true);
    put(store.exportDirectory() / "VxmSettings.plist", "an earlier export");
}

}  // namespace store
