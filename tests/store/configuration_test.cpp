#include <grp.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Child.h"
#include "Files.h"
#include "Values.h"
#include "store/ConfigurationStore.h"
#include "store/NotifyCenter.h"
#include "store/Schema.h"
#include "store/plist/PropertyListFile.h"
#include "store/rules/RuleFile.h"

namespace store {
namespace {

// Notes what is posted, and what the files hold at that moment.
class RecordingNotifyCenter : public NotifyCenter {
public:
    void post(std::string_view name) override {
        names.emplace_back(name);
        if (atPost) atPost();
    }

    std::vector<std::string> names;
    std::function<void()> atPost;
};

class ConfigurationStoreTest : public testing::Test {
protected:
    ConfigurationStoreTest() {
        std::filesystem::create_directories(root / "var/mobile/Library/Preferences/Vxm");
        std::filesystem::create_directories(root / "Applications/VexmorGUI.app/Lists");
    }

    std::filesystem::path preferences(std::string_view name) const {
        return root / "var/mobile/Library/Preferences" / name;
    }
    static std::string text(std::string_view entries) { return "<dict>" + std::string(entries) + "</dict>"; }
    bool holdsExactly(File file, std::string_view entries) const {
        std::optional<Dictionary> dictionary = store.read(file);
        return dictionary && canonical(*dictionary) == canonical(dictionaryOf(text(entries)));
    }

    TemporaryDirectory root;
    RecordingNotifyCenter center;
    ConfigurationStore store{root.path(), center};
};

constexpr const char* none = nullptr;
constexpr const char* marker = "<key>150</key><true/>";

TEST_F(ConfigurationStoreTest, FollowsTheWritersTable) {
    struct Row {
        const char* what;
        Writer writer;
        const char* whenMissing;  // the file after the change, when there was none; none: still none
        bool addsMarker;
        const char* notification;
    };
    const char* change = "<key>changed</key><true/>";
    const std::string changeAndMarker = std::string(marker) + change;
    const Row table[] = {
        {"prune", writers::pruneApps, none, true, none},
        {"add app", writers::addApp, none, true, none},
        {"delete app", writers::deleteApp, none, false, none},
        {"app enabled", writers::appEnabled, none, true, "com.urmeld.vxm.hookLate"},
        {"app disabled", writers::appDisabled, none, true, none},
        {"app switch", writers::appSwitch, none, true, none},
        {"global list", writers::globalRuleList, none, true, none},
        {"app list", writers::appRuleList, none, true, none},
        {"flag", writers::guiFlag, change, false, none},
        {"global switch", writers::globalSwitch, changeAndMarker.c_str(), true, "com.urmeld.vxm.reloadBoth"},
        {"list import", writers::listImport, none, true, none},
    };
    for (const Row& row : table) {
        SCOPED_TRACE(row.what);
        std::filesystem::path path = store.path(row.writer.file);
        std::vector<std::string> steps;
        auto changeIt = [](Dictionary& dictionary) { dictionary.set("changed", Value(true)); };
        auto noteWrite = [&] {
            steps.push_back(contentOf(path).find("changed") == std::string::npos ? "early" : "wrote");
        };
        center.atPost = [&] { steps.push_back(steps.empty() ? "early" : "posted"); };
        std::vector<std::string> expectedSteps{"wrote"};
        if (row.notification) expectedSteps.push_back("posted");

        for (const char* broken : {none, "", "<array/>", "<dict><key>a</key>"}) {
            std::filesystem::remove(path);
            if (broken) put(path, broken);
            center.names.clear();
            steps.clear();
            EXPECT_EQ(store.change(row.writer, changeIt, noteWrite), row.whenMissing != none);
            if (row.whenMissing) {
                EXPECT_TRUE(holdsExactly(row.writer.file, row.whenMissing));
                EXPECT_EQ(steps, expectedSteps);
            } else {
                EXPECT_EQ(store.exists(row.writer.file), broken != none);
                EXPECT_EQ(contentOf(path), broken ? broken : "");
                EXPECT_TRUE(steps.empty());
            }
        }

        const std::string kept = "<key>unknown</key><array><integer>0x1</integer></array>";
        for (const char* before : {"", marker, "<key>150</key><string>odd</string>"}) {
            put(path, text(before + kept));
            center.names.clear();
            steps.clear();
            EXPECT_TRUE(store.change(row.writer, changeIt, noteWrite));
            std::string expectedMarker = *before || !row.addsMarker ? before : marker;
            EXPECT_TRUE(holdsExactly(row.writer.file, expectedMarker + change + kept));
            EXPECT_NE(contentOf(path).find(kept.substr(kept.find("<array>"))), std::string::npos);
            EXPECT_EQ(steps, expectedSteps);
            EXPECT_EQ(center.names,
                      row.notification ? std::vector<std::string>{row.notification} : std::vector<std::string>());
        }
        std::filesystem::remove(path);
    }
}

TEST_F(ConfigurationStoreTest, CreatesTheAppRulesFileOnFirstUseOnly) {
    store.createAppRulesFileIfMissing();
    EXPECT_TRUE(holdsExactly(File::appRules, marker));
    put(store.path(File::appRules), "unreadable");
    store.createAppRulesFileIfMissing();
    EXPECT_EQ(contentOf(store.path(File::appRules)), "unreadable");
    EXPECT_TRUE(center.names.empty());
}

TEST_F(ConfigurationStoreTest, SwitchesTheFirewallByTheMarkerFile) {
    std::vector<bool> seen;
    center.atPost = [&] { seen.push_back(store.isDisabled()); };
    EXPECT_FALSE(store.isDisabled());
    store.setDisabled(true);
    EXPECT_EQ(contentOf(preferences("com.Urmeld.Firewall.disabled")), "");
    store.setDisabled(true);
    store.setDisabled(false);
    store.setDisabled(false);
    EXPECT_EQ(seen, (std::vector<bool>{true, true, false, false}));
    EXPECT_EQ(center.names, std::vector<std::string>(4, "com.urmeld.vxm.reloadBoth"));
}

TEST_F(ConfigurationStoreTest, DeletesAllRulesAndSettings) {
    put(store.path(File::appRules), text("<key>com.example.a</key><dict/>"));
    put(store.path(File::guiSettings), text("<key>didShowEditAlert</key><true/>"));
    store.setDisabled(true);
    center.names.clear();
    bool isWritten = false;
    store.deleteAllRulesAndSettings([&] {
        isWritten = holdsExactly(File::appRules, marker) && holdsExactly(File::globalRules, marker);
        EXPECT_TRUE(center.names.empty());
    });
    EXPECT_TRUE(isWritten);
    EXPECT_TRUE(store.isDisabled());
    EXPECT_TRUE(holdsExactly(File::guiSettings, "<key>didShowEditAlert</key><true/>"));
    EXPECT_EQ(center.names, std::vector<std::string>{"com.urmeld.vxm.reloadBoth"});
}

TEST_F(ConfigurationStoreTest, ReplacesFilesWithoutTellingAnybody) {
    store.replace(File::appRules, dictionaryOf(text("<key>a</key><dict/>")));
    EXPECT_TRUE(holdsExactly(File::appRules, "<key>a</key><dict/>"));
    EXPECT_TRUE(center.names.empty());
    store.terminate();
    EXPECT_EQ(center.names, std::vector<std::string>{"com.urmeld.vxm.reloadBoth"});
}

// An export holds whole files one level down; taking it apart again gives the same files.
TEST_F(ConfigurationStoreTest, CarriesWholeFilesInAFile) {
    std::string entries = "<key>a</key><dict><key>allow</key><array><dict/></array></dict><key>150</key><true/>";
    put(store.path(File::appRules), text(entries));
    Dictionary exported;
    exported.set(keys::appRules, Value(*store.read(File::appRules)));
    EXPECT_TRUE(writeDictionary(store.exportDirectory() / "export.plist", exported));
    std::filesystem::remove(store.path(File::appRules));
    Dictionary imported = *readRuleFile(store.exportDirectory() / "export.plist");
    store.replace(File::appRules, *imported.find(keys::appRules)->dictionary());
    EXPECT_TRUE(holdsExactly(File::appRules, entries));
    EXPECT_FALSE(writeDictionary(root / "missing/export.plist", exported));
}

TEST_F(ConfigurationStoreTest, KeepsWhatItDoesNotBuildOn) {
    auto flag = [&] { store.change(writers::guiFlag, [](Dictionary& d) { d.set("changed", Value(true)); }); };
    auto globalSwitch = [&] { store.change(writers::globalSwitch, [](Dictionary& d) { d.set("log", Value(true)); }); };
    auto list = [&] { store.change(writers::listImport, [](Dictionary& d) { d.set("globalDeny", Value(Array())); }); };
    auto deleteAll = [&] { store.deleteAllRulesAndSettings(); };
    auto import = [&] {
        for (File file : {File::appRules, File::globalRules, File::guiSettings})
            store.replace(file, dictionaryOf(text("<key>imported</key><true/>")));
    };
    const std::string readable = text("<key>a</key><string>mine</string>");
    const std::string damaged = "<dict><key>cut sh";
    struct Row {
        const char* what;
        std::function<void()> act;
        File file;
        std::string before;
        const char* keptAs;  // none: nothing is kept
    };
    const Row table[] = {
        {"flag", flag, File::guiSettings, readable, none},
        {"flag, damaged", flag, File::guiSettings, damaged, ".damaged"},
        {"flag, empty", flag, File::guiSettings, "", ".damaged"},
        {"global switch", globalSwitch, File::globalRules, readable, none},
        {"global switch, damaged", globalSwitch, File::globalRules, damaged, ".damaged"},
        {"list import, damaged", list, File::globalRules, damaged, none},
        {"delete all", deleteAll, File::appRules, readable, ".previous"},
        {"delete all, damaged", deleteAll, File::globalRules, damaged, ".damaged"},
        {"import", import, File::guiSettings, readable, ".previous"},
        {"import, damaged", import, File::appRules, damaged, ".damaged"},
    };
    for (const Row& row : table) {
        SCOPED_TRACE(row.what);
        std::filesystem::remove_all(preferences(""));
        std::filesystem::create_directory(preferences(""));
        const std::filesystem::path path = store.path(row.file);
        put(path, row.before);
        row.act();
        std::set<std::string> kept;
        for (const std::string& name : namesIn(preferences("")))
            if (name.starts_with(path.filename().string()) && name != path.filename()) kept.insert(name);
        EXPECT_EQ(kept, row.keptAs ? std::set{path.filename().string() + row.keptAs} : std::set<std::string>());
        if (row.keptAs) {
            EXPECT_EQ(contentOf(path.string() + row.keptAs), row.before);
        }
    }
}

TEST_F(ConfigurationStoreTest, KeepsOneGenerationInItsOwnFolder) {
    const std::filesystem::path path = store.path(File::appRules);
    const std::filesystem::path previous = path.string() + ".previous";
    auto replaceBy = [&](const char* name) {
        store.replace(File::appRules, dictionaryOf(text("<key>" + std::string(name) + "</key><true/>")));
    };
    put(root / "stranger", "a stranger's");
    std::filesystem::create_symlink(root / "stranger", previous);
    replaceBy("first");
    EXPECT_TRUE(std::filesystem::is_symlink(previous)) << "there was nothing to keep";
    for (const char* next : {"second", "third"}) {
        const std::string before = contentOf(path);
        replaceBy(next);
        EXPECT_FALSE(std::filesystem::is_symlink(previous));
        EXPECT_EQ(contentOf(previous), before);
        EXPECT_EQ(statusOf(previous).st_nlink, 1u);
    }
    EXPECT_EQ(contentOf(root / "stranger"), "a stranger's");

    // What is kept is the file itself already, after a replacement that came no further.
    std::filesystem::remove(previous);
    std::filesystem::create_hard_link(path, previous);
    replaceBy("fourth");
    EXPECT_NE(contentOf(path), contentOf(previous));

    // Nothing is kept in place of a folder, and the file is replaced all the same.
    std::filesystem::remove(previous);
    std::filesystem::create_directory(previous);
    replaceBy("fifth");
    EXPECT_TRUE(holdsExactly(File::appRules, "<key>fifth</key><true/>"));

    // Where the file is a link, it is what the link leads to that is kept, beside the link.
    std::filesystem::remove(previous);
    std::filesystem::create_directory(root / "elsewhere");
    std::filesystem::rename(path, root / "elsewhere/rules");
    std::filesystem::create_symlink(root / "elsewhere/rules", path);
    const std::string before = contentOf(path);
    replaceBy("sixth");
    EXPECT_EQ(contentOf(previous), before);
    EXPECT_EQ(namesIn(root / "elsewhere"), std::set<std::string>{"rules"});
    EXPECT_EQ(namesIn(preferences("")), (std::set<std::string>{"Vxm", path.filename(), previous.filename()}));
    EXPECT_TRUE(std::filesystem::is_empty(store.exportDirectory())) << "the export screen lists what is in there";
}

// Two people of one group share the folder, and the system refuses the one a second name for the other's file.
TEST_F(ConfigurationStoreTest, KeepsTheFilesOfAnotherPerson) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can be two people";
    constexpr uid_t owner = 1234;
    constexpr uid_t other = 5678;
    constexpr gid_t group = 4321;
    const std::string readable = text("<key>mine</key><true/>");
    struct Row {
        const char* what;
        std::string before;
        mode_t mode;
        const char* keptAs;
    };
    const Row table[] = {
        {"readable", readable, 0644, ".previous"},
        {"damaged", "<dict><key>cut sh", 0644, ".damaged"},
        {"unreadable", readable, 0600, ".damaged"},
    };
    std::filesystem::permissions(root.path(), std::filesystem::perms(0755));
    for (const Row& row : table) {
        SCOPED_TRACE(row.what);
        std::filesystem::remove_all(preferences(""));
        std::filesystem::create_directory(preferences(""));
        ASSERT_EQ(chown(preferences("").c_str(), owner, group) + chmod(preferences("").c_str(), 0775), 0);
        const std::filesystem::path path = store.path(File::appRules);
        const std::filesystem::path kept = path.string() + row.keptAs;
        put(path, row.before);
        put(kept, "an earlier generation");
        for (const auto& each : {path, kept})
            ASSERT_EQ(chown(each.c_str(), owner, group) + chmod(each.c_str(), row.mode), 0);
        EXPECT_EQ(inChild([&] {
                      if (setgroups(0, nullptr) != 0 || setgid(group) != 0 || setuid(other) != 0) return 1;
                      store.replace(File::appRules, dictionaryOf(text("<key>imported</key><true/>")));
                      return 0;
                  }),
                  0);
        EXPECT_TRUE(holdsExactly(File::appRules, "<key>imported</key><true/>"));
        EXPECT_EQ(contentOf(kept), row.before);
        EXPECT_EQ(statusOf(kept).st_uid, owner);
        EXPECT_EQ(statusOf(path).st_mode & 07777, row.mode);
        EXPECT_EQ(namesIn(preferences("")), (std::set<std::string>{path.filename(), kept.filename()}));
    }
}

TEST_F(ConfigurationStoreTest, LeavesWhatALinkInPlaceOfTheMarkerLeadsTo) {
    put(root / "stranger", "a stranger's");
    std::filesystem::create_symlink(root / "stranger", preferences("com.Urmeld.Firewall.disabled"));
    store.setDisabled(true);
    EXPECT_TRUE(store.isDisabled());
    store.setDisabled(false);
    EXPECT_FALSE(store.isDisabled());
    EXPECT_EQ(contentOf(root / "stranger"), "a stranger's");
}

TEST_F(ConfigurationStoreTest, SweepsWhereItsLinksLead) {
    constexpr const char* leftover = ".rules.vxm-abcdefghijkl";
    constexpr const char* ofOthers = ".another.vxm-abcdefghijkl";
    std::filesystem::create_directory(root / "elsewhere");
    std::filesystem::create_symlink(root / "elsewhere/rules", store.path(File::appRules));
    for (bool isThere : {false, true}) {
        if (isThere) put(root / "elsewhere/rules", text(""));
        for (const char* name : {leftover, ofOthers}) put((root / "elsewhere") / name, "half");
        ConfigurationStore next(root.path(), center);
        EXPECT_FALSE(namesIn(root / "elsewhere").contains(leftover));
        EXPECT_TRUE(namesIn(root / "elsewhere").contains(ofOthers));
    }
}

TEST_F(ConfigurationStoreTest, SweepsLeftoversWhenItStarts) {
    put(preferences(".com.Urmeld.FirewallRules2.plist.vxm-abcdefghijkl"), "half");
    put(store.exportDirectory() / ".VxmSettings.plist.vxm-abcdefghijkl", "half");
    ConfigurationStore next(root.path(), center);
    EXPECT_EQ(namesIn(preferences("")), std::set<std::string>{"Vxm"});
    EXPECT_TRUE(std::filesystem::is_empty(store.exportDirectory()));
}

TEST(Schema, ReadsRecordsWithTheirDefaults) {
    struct Row {
        const char* record;
        bool enabled;
        BlanketMode mode;
        bool stillUseRules;
        bool blockSpecificWiFi;
    };
    using enum BlanketMode;
    const Row table[] = {
        {"<dict/>", true, neither, false, false},
        {"<string>no record</string>", true, neither, false, false},
        {"<dict><key>enabled</key><true/><key>stillUseRules</key><true/><key>blockSpecificWiFi</key><true/></dict>",
         true, neither, true, true},
        {"<dict><key>enabled</key><false/><key>stillUseRules</key><false/><key>blockSpecificWiFi</key><false/></dict>",
         false, neither, false, false},
        {"<dict><key>enabled</key><integer>1</integer><key>stillUseRules</key><integer>0</integer>"
         "<key>blockSpecificWiFi</key><string>false</string></dict>",
         false, neither, true, true},
        {"<dict><key>allowEverything</key><string>1</string></dict>", true, allowAll, false, false},
        {"<dict><key>allowEverything</key><string>2</string></dict>", true, denyAll, false, false},
        {"<dict><key>allowEverything</key><string>3</string></dict>", true, neither, false, false},
        {"<dict><key>allowEverything</key><integer>1</integer></dict>", true, neither, false, false},
    };
    for (const Row& row : table) {
        Dictionary file = dictionaryOf("<dict><key>com.example.a</key>" + std::string(row.record) + "</dict>");
        AppRuleRecord record = AppRuleRecord::of(file, "com.example.a");
        EXPECT_EQ(record.enabled(), row.enabled) << row.record;
        EXPECT_EQ(record.blanketMode(), row.mode) << row.record;
        EXPECT_EQ(record.flag(keys::stillUseRules), row.stillUseRules) << row.record;
        EXPECT_EQ(record.flag(keys::blockSpecificWiFi), row.blockSpecificWiFi) << row.record;
    }
}

TEST(Schema, WritesRecords) {
    Dictionary file;
    AppRuleRecord::fresh().storeIn(file, "fresh");
    AppRuleRecord record = AppRuleRecord::of(file, "none");
    record.dictionary().set("unknown", Value(true));
    record.setBlanketMode(BlanketMode::denyAll);
    record.setEnabled(false);
    record.setFlag(keys::stillUseRules, true);
    record.setFlag(keys::blockSpecificWiFi, true);
    record.storeIn(file, "set");
    EXPECT_EQ(canonical(file), canonical(dictionaryOf(
                                   "<dict><key>fresh</key><dict><key>allow</key><array/><key>deny</key><array/>"
                                   "<key>allowEverything</key><string/></dict><key>set</key><dict>"
                                   "<key>allowEverything</key><string>2</string><key>blockSpecificWiFi</key><true/>"
                                   "<key>enabled</key><false/><key>stillUseRules</key><true/><key>unknown</key><true/>"
                                   "</dict></dict>")));
}

}  // namespace
}  // namespace store
