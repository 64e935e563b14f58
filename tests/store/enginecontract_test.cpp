#include <gtest/gtest.h>

#include "Files.h"
#include "Values.h"
#include "Verbs.h"
#include "store/ConfigurationStore.h"
#include "store/Schema.h"
#include "store/rules/RuleList.h"

// The document for those who write engines says what the app does: its examples are read by the app as described, are
// written by the app to the letter, and use every key that it has.

namespace store {
namespace {

const std::string& document() {
    static const std::string text = contentOf(VEXMOR_ENGINE_CONTRACT);
    return text;
}

// The example that follows the file's name at the beginning of a line.
std::string exampleOf(const std::filesystem::path& file) {
    constexpr std::string_view opening = "```xml\n";
    const std::size_t name = document().find("\n`" + file.filename().string() + "`, with ");
    const std::size_t begin = document().find(opening, name);
    const std::size_t end = document().find("```\n", begin + 1);
    if (name == std::string::npos || begin == std::string::npos || end == std::string::npos) return {};
    return document().substr(begin + opening.size(), end - begin - opening.size());
}

std::set<std::string> keysOf(const Dictionary& dictionary) {
    std::set<std::string> names;
    for (const auto& [key, value] : dictionary) names.insert(key);
    return names;
}

std::vector<std::string> rulesOf(const Value* list) {
    const RuleList rules = RuleList::load(list);
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < rules.size(); ++i) texts.emplace_back(rules.rule(i));
    return texts;
}

struct EngineContractTest : testing::Test {
    EngineContractTest() {
        std::filesystem::create_directories(store.path(File::appRules).parent_path());
        for (File file : {File::appRules, File::globalRules}) put(store.path(file), exampleOf(store.path(file)));
    }

    TemporaryDirectory root;
    Posts posts;
    ConfigurationStore store{root.path(), posts};
};

TEST_F(EngineContractTest, ExamplesAreWrittenToTheLetter) {
    for (File file : {File::appRules, File::globalRules}) {
        SCOPED_TRACE(store.path(file));
        const std::optional<Dictionary> example = store.read(file);
        ASSERT_TRUE(example);
        EXPECT_EQ(canonical(*example), exampleOf(store.path(file)));
    }
}

TEST_F(EngineContractTest, AppRulesSayWhatTheDocumentSays) {
    const Dictionary example = store.read(File::appRules).value();
    EXPECT_EQ(keysOf(example), (std::set<std::string>{"150", "org.example.HarbourMail", "org.example.PaperCrane"}));
    EXPECT_TRUE(isTrue(example, keys::marker));

    const AppRuleRecord mail = AppRuleRecord::of(example, "org.example.HarbourMail");
    EXPECT_TRUE(mail.enabled());
    EXPECT_EQ(mail.blanketMode(), BlanketMode::denyAll);
    EXPECT_TRUE(mail.flag(keys::stillUseRules));
    EXPECT_FALSE(mail.flag(keys::blockSpecificWiFi));
    EXPECT_EQ(rulesOf(mail.dictionary().find(keys::allow)),
              (std::vector<std::string>{"imap.example.com", "*.mail.example.net"}));
    EXPECT_EQ(RuleList::load(mail.dictionary().find(keys::allow)).date(0), Date(std::chrono::seconds(1709370840)));

    // All that a record can hold, as the example has it, and what a new one holds.
    AppRuleRecord full = AppRuleRecord::fresh();
    full.setEnabled(mail.enabled());
    full.setBlanketMode(mail.blanketMode());
    for (const auto key : keys::appSwitches) full.setFlag(key, mail.flag(key));
    for (const auto key : {keys::allow, keys::deny}) full.dictionary().set(key, *mail.dictionary().find(key));
    EXPECT_EQ(canonical(full.dictionary()), canonical(mail.dictionary()));
    EXPECT_EQ(canonical(AppRuleRecord::of(example, "org.example.PaperCrane").dictionary()),
              canonical(AppRuleRecord::fresh().dictionary()));
}

TEST_F(EngineContractTest, GlobalRulesSayWhatTheDocumentSays) {
    const Dictionary example = store.read(File::globalRules).value();
    EXPECT_EQ(rulesOf(example.find(keys::globalDeny)), std::vector<std::string>{"203.0.113.99:80"});
    EXPECT_TRUE(rulesOf(example.find(keys::globalAllow)).empty());
    EXPECT_TRUE(boolValue(example, keys::log));
    std::set<std::string> known(keys::globalSwitches.begin(), keys::globalSwitches.end());
    for (const auto key : {keys::marker, keys::globalAllow, keys::globalDeny}) known.emplace(key);
    EXPECT_EQ(keysOf(example), known);
}

TEST_F(EngineContractTest, NamesWhatTheAppUses) {
    store.setDisabled(true);
    std::set<std::string> names = namesIn(store.path(File::appRules).parent_path());
    names.insert({store.path(File::guiSettings).filename(), store.logFile().filename(), std::string(reloadBoth),
                  std::string(hookLate), std::string(keys::showAllowHelp), std::string(keys::didShowEditAlert),
                  std::string(keys::gameCenterDaemon), std::string(keys::appRules), std::string(keys::globalRules),
                  std::string(keys::settings), store.exportDirectory().filename().string() + "/"});
    for (const std::string& name : names)
        EXPECT_NE(document().find("`" + name + "`"), std::string::npos) << name << " is missing";
}

}  // namespace
}  // namespace store
