#include <grp.h>
#include <gtest/gtest.h>

#include <functional>

#include "Child.h"
#include "Files.h"
#include "Values.h"
#include "Verbs.h"
#include "store/ConfigurationStore.h"
#include "store/Schema.h"

namespace store {
namespace {

using Names = std::set<std::string>;

std::string text(std::string_view entries) {
    return "<dict>" + std::string(entries) + "</dict>";
}

struct ConfigurationStoreTest : testing::Test {
    ConfigurationStoreTest() { startAnew(); }

    void startAnew() {
        std::filesystem::remove_all(preferences(""));
        std::filesystem::create_directories(preferences("Vxm"));
        posts.names.clear();
    }
    std::filesystem::path preferences(std::string_view name) const {
        return root / "var/mobile/Library/Preferences" / name;
    }
    void replaceBy(File file, const std::string& key) {
        store.replace(file, dictionaryOf(text("<key>" + key + "</key><true/>")));
    }
    bool holdsExactly(File file, std::string_view entries) const {
        std::optional<Dictionary> dictionary = store.read(file);
        return dictionary && canonical(*dictionary) == canonical(dictionaryOf(text(entries)));
    }

    TemporaryDirectory root;
    Posts posts;
    ConfigurationStore store{root.path(), posts};
    const std::filesystem::path rules = store.path(File::appRules);
};

constexpr const char* none = nullptr;
constexpr const char* marker = "<key>150</key><true/>";

TEST_F(ConfigurationStoreTest, FollowsTheWritersTable) {
    const char* change = "<key>changed</key><true/>";
    const std::string changeAndMarker = std::string(marker) + change;
    // The file after the change, when there was none (none: still none); whether a marker joins; the notification.
    const std::tuple<const char*, Writer, const char*, bool, const char*> table[] = {
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
    for (const auto& [what, by, whenMissing, addsMarker, notification] : table) {
        SCOPED_TRACE(what);
        const Writer writer = by;
        std::filesystem::path path = store.path(writer.file);
        std::vector<std::string> steps;
        posts.atPost = [&] { steps.push_back("posted " + posts.names.back()); };
        std::vector<std::string> expectedSteps{"wrote"};
        if (notification) expectedSteps.push_back(std::string("posted ") + notification);
        const auto makeChange = [&](const char* before) {
            std::filesystem::remove(path);
            if (before) put(path, before);
            steps.clear();
            return store.change(
                writer, [](Dictionary& dictionary) { dictionary.set("changed", Value(true)); },
                [&] { steps.push_back(contentOf(path).find("changed") == std::string::npos ? "early" : "wrote"); });
        };
        for (const char* broken : {none, "", "<array/>", "<dict><key>a</key>"}) {
            EXPECT_EQ(makeChange(broken), whenMissing != none);
            EXPECT_EQ(steps, whenMissing ? expectedSteps : std::vector<std::string>());
            EXPECT_EQ(store.exists(writer.file), whenMissing || broken);
            if (whenMissing)
                EXPECT_TRUE(holdsExactly(writer.file, whenMissing));
            else
                EXPECT_EQ(contentOf(path), broken ? broken : "");
        }
        const std::string array = "<array><integer>0x1</integer></array>";
        const std::string kept = "<key>unknown</key>" + array;
        for (const char* before : {"", marker, "<key>150</key><string>odd</string>"}) {
            EXPECT_TRUE(makeChange(text(before + kept).c_str()));
            std::string expected = *before || !addsMarker ? before : marker;
            EXPECT_TRUE(holdsExactly(writer.file, expected.append(change).append(kept)));
            EXPECT_NE(contentOf(path).find(array), std::string::npos) << "it was not left as it stood";
            EXPECT_EQ(steps, expectedSteps);
        }
        std::filesystem::remove(path);
    }
}

TEST_F(ConfigurationStoreTest, CreatesTheAppRulesFileOnFirstUseOnly) {
    store.createAppRulesFileIfMissing();
    EXPECT_TRUE(holdsExactly(File::appRules, marker));
    put(rules, "unreadable");
    store.createAppRulesFileIfMissing();
    EXPECT_EQ(contentOf(rules), "unreadable");
    EXPECT_TRUE(posts.names.empty());
}

TEST_F(ConfigurationStoreTest, SwitchesTheFirewallByTheMarkerFile) {
    const std::filesystem::path disabled = preferences("com.Urmeld.Firewall.disabled");
    std::vector<bool> seen;
    posts.atPost = [&] { seen.push_back(store.isDisabled()); };
    EXPECT_FALSE(store.isDisabled());
    store.setDisabled(true);
    EXPECT_EQ(contentOf(disabled), "");
    for (bool isDisabled : {true, false, false}) store.setDisabled(isDisabled);
    // What a link in its place leads to stays as it is.
    put(root / "stranger", "a stranger's");
    std::filesystem::create_symlink(root / "stranger", disabled);
    for (bool isDisabled : {true, false}) store.setDisabled(isDisabled);
    EXPECT_EQ(contentOf(root / "stranger"), "a stranger's");
    EXPECT_EQ(seen, (std::vector<bool>{true, true, false, false, true, false}));
    EXPECT_EQ(posts.names, std::vector<std::string>(6, "com.urmeld.vxm.reloadBoth"));
}

TEST_F(ConfigurationStoreTest, DeletesAllRulesAndSettings) {
    put(rules, text("<key>com.example.a</key><dict/>"));
    put(store.path(File::guiSettings), text("<key>didShowEditAlert</key><true/>"));
    store.setDisabled(true);
    posts.names.clear();
    bool isWritten = false;
    store.deleteAllRulesAndSettings([&] {
        isWritten = holdsExactly(File::appRules, marker) && holdsExactly(File::globalRules, marker);
        EXPECT_TRUE(posts.names.empty());
    });
    EXPECT_TRUE(isWritten);
    EXPECT_TRUE(store.isDisabled());
    EXPECT_TRUE(holdsExactly(File::guiSettings, "<key>didShowEditAlert</key><true/>"));
    EXPECT_EQ(posts.names, std::vector<std::string>{"com.urmeld.vxm.reloadBoth"});
}

TEST_F(ConfigurationStoreTest, KeepsWhatItDoesNotBuildOn) {
    const auto changeBy = [this](const Writer& writer) {
        return [this, writer] { store.change(writer, [](Dictionary& file) { file.set("changed", Value(true)); }); };
    };
    const auto import = [this] {
        for (File file : everyFile) replaceBy(file, "imported");
        EXPECT_TRUE(posts.names.empty());
    };
    const std::string readable = text("<key>a</key><string>mine</string>");
    const std::string damaged = "<dict><key>cut sh";
    const std::tuple<const char*, std::function<void()>, File, std::string, const char*> table[] = {
        {"flag", changeBy(writers::guiFlag), File::guiSettings, readable, none},
        {"flag, damaged", changeBy(writers::guiFlag), File::guiSettings, damaged, ".damaged"},
        {"flag, empty", changeBy(writers::guiFlag), File::guiSettings, "", ".damaged"},
        {"global switch, damaged", changeBy(writers::globalSwitch), File::globalRules, damaged, ".damaged"},
        {"list import, damaged", changeBy(writers::listImport), File::globalRules, damaged, none},
        {"delete all", [this] { store.deleteAllRulesAndSettings(); }, File::appRules, readable, ".previous"},
        {"delete all, damaged", [this] { store.deleteAllRulesAndSettings(); }, File::globalRules, damaged, ".damaged"},
        {"import", import, File::guiSettings, readable, ".previous"},
        {"import, damaged", import, File::appRules, damaged, ".damaged"},
    };
    for (const auto& [what, act, file, before, keptAs] : table) {
        SCOPED_TRACE(what);
        startAnew();
        const std::string path = store.path(file);
        put(path, before);
        act();
        for (const char* suffix : {".previous", ".damaged"}) {
            const bool isKept = keptAs && suffix == std::string_view(keptAs);
            EXPECT_EQ(std::filesystem::exists(path + suffix), isKept) << suffix;
            EXPECT_EQ(contentOf(path + suffix), isKept ? before : "") << suffix;
        }
    }
}

TEST_F(ConfigurationStoreTest, KeepsOneGenerationInItsOwnFolder) {
    const std::filesystem::path previous = rules.string() + ".previous";
    put(root / "stranger", "a stranger's");
    std::filesystem::create_symlink(root / "stranger", previous);
    replaceBy(File::appRules, "first");
    EXPECT_TRUE(std::filesystem::is_symlink(previous)) << "there was nothing to keep";
    for (const char* next : {"second", "third"}) {
        const std::string before = contentOf(rules);
        replaceBy(File::appRules, next);
        EXPECT_FALSE(std::filesystem::is_symlink(previous));
        EXPECT_EQ(contentOf(previous), before);
        EXPECT_EQ(statusOf(previous).st_nlink, 1u);
    }
    EXPECT_EQ(contentOf(root / "stranger"), "a stranger's");

    // What is kept is the file itself already, after a replacement that came no further.
    std::filesystem::remove(previous);
    std::filesystem::create_hard_link(rules, previous);
    replaceBy(File::appRules, "fourth");
    EXPECT_NE(contentOf(rules), contentOf(previous));

    // Nothing is kept in place of a folder, and the file is replaced all the same.
    std::filesystem::remove(previous);
    std::filesystem::create_directory(previous);
    replaceBy(File::appRules, "fifth");
    EXPECT_TRUE(holdsExactly(File::appRules, "<key>fifth</key><true/>"));

    // Where the file is a link, it is what the link leads to that is kept, beside the link.
    std::filesystem::remove(previous);
    std::filesystem::create_directory(root / "elsewhere");
    std::filesystem::rename(rules, root / "elsewhere/rules");
    std::filesystem::create_symlink(root / "elsewhere/rules", rules);
    const std::string before = contentOf(rules);
    replaceBy(File::appRules, "sixth");
    EXPECT_EQ(contentOf(previous), before);
    EXPECT_EQ(namesIn(root / "elsewhere"), Names{"rules"});
    EXPECT_EQ(namesIn(preferences("")), (Names{"Vxm", rules.filename(), previous.filename()}));
    EXPECT_TRUE(std::filesystem::is_empty(store.exportDirectory())) << "the export screen lists what is in there";
}

// Two people of one group share the folder, and the system refuses the one a second name for the other's file.
TEST_F(ConfigurationStoreTest, KeepsTheFilesOfAnotherPerson) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can be two people";
    constexpr uid_t owner = 1234;
    constexpr uid_t other = 5678;
    constexpr gid_t group = 4321;
    const auto give = [](const std::filesystem::path& path, mode_t mode) {
        ASSERT_EQ(chown(path.c_str(), owner, group) + chmod(path.c_str(), mode), 0);
    };
    const std::string readable = text("<key>mine</key><true/>");
    const std::tuple<const char*, std::string, mode_t, const char*> table[] = {
        {"readable", readable, 0644, ".previous"},
        {"damaged", "<dict><key>cut sh", 0644, ".damaged"},
        {"unreadable", readable, 0600, ".damaged"},
    };
    std::filesystem::permissions(root.path(), std::filesystem::perms(0755));
    for (const auto& [what, before, mode, keptAs] : table) {
        SCOPED_TRACE(what);
        startAnew();
        const std::filesystem::path kept = rules.string() + keptAs;
        put(rules, before);
        put(kept, "an earlier generation");
        give(rules, mode);
        give(kept, mode);
        give(preferences(""), 0775);
        EXPECT_EQ(inChild([&] {
                      if (setgroups(0, nullptr) != 0 || setgid(group) != 0 || setuid(other) != 0) return 1;
                      replaceBy(File::appRules, "imported");
                      return 0;
                  }),
                  0);
        EXPECT_TRUE(holdsExactly(File::appRules, "<key>imported</key><true/>"));
        EXPECT_EQ(contentOf(kept), before);
        EXPECT_EQ(statusOf(kept).st_uid, owner);
        EXPECT_EQ(statusOf(rules).st_mode & 07777, mode);
        EXPECT_EQ(namesIn(preferences("")), (Names{"Vxm", rules.filename(), kept.filename()}));
    }
}

TEST_F(ConfigurationStoreTest, SweepsLeftoversWhenItStarts) {
    const std::filesystem::path leftovers[] = {
        preferences(".com.Urmeld.FirewallRules2.plist.vxm-abcdefghijkl"),
        store.exportDirectory() / ".VxmSettings.plist.vxm-abcdefghijkl",
        root / "elsewhere/.rules.vxm-abcdefghijkl",
    };
    const std::filesystem::path ofOthers = root / "elsewhere/.another.vxm-abcdefghijkl";
    std::filesystem::create_directory(root / "elsewhere");
    std::filesystem::create_symlink(root / "elsewhere/rules", rules);
    for (bool isThere : {false, true}) {
        if (isThere) put(root / "elsewhere/rules", text(""));
        for (const auto& path : leftovers) put(path, "half");
        put(ofOthers, "half");
        ConfigurationStore next(root.path(), posts);
        for (const auto& path : leftovers) EXPECT_FALSE(std::filesystem::exists(path)) << path;
        EXPECT_TRUE(std::filesystem::exists(ofOthers));
    }
}

TEST(Schema, ReadsRecordsWithTheirDefaults) {
    using enum BlanketMode;
    struct Row {
        const char* record;
        BlanketMode mode;
        bool enabled;
        bool stillUseRules = false;
        bool blockSpecificWiFi = false;
    };
    const Row table[] = {
        {"<dict/>", neither, true},
        {"<string>no record</string>", neither, true},
        {"<dict><key>enabled</key><true/><key>stillUseRules</key><true/></dict>", neither, true, true},
        {"<dict><key>enabled</key><false/><key>stillUseRules</key><false/></dict>", neither, false},
        {"<dict><key>enabled</key><integer>1</integer><key>stillUseRules</key><integer>0</integer>"
         "<key>blockSpecificWiFi</key><string>false</string></dict>",
         neither, false, true, true},
        {"<dict><key>allowEverything</key><string>1</string></dict>", allowAll, true},
        {"<dict><key>allowEverything</key><string>2</string></dict>", denyAll, true},
        {"<dict><key>allowEverything</key><string>3</string></dict>", neither, true},
        {"<dict><key>allowEverything</key><integer>1</integer></dict>", neither, true},
    };
    for (const Row& row : table) {
        SCOPED_TRACE(row.record);
        const AppRuleRecord record = AppRuleRecord::of(dictionaryOf(holdingXml(row.record)), "a");
        EXPECT_EQ(record.enabled(), row.enabled);
        EXPECT_EQ(record.blanketMode(), row.mode);
        EXPECT_EQ(record.flag(keys::stillUseRules), row.stillUseRules);
        EXPECT_EQ(record.flag(keys::blockSpecificWiFi), row.blockSpecificWiFi);
    }
}

}  // namespace
}  // namespace store
