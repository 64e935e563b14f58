// The program itself, as people and other programs run it.
#include <gtest/gtest.h>

#include "engine/Entries.h"
#include "store/Files.h"
#include "store/Schema.h"
#include "store/SharedFiles.h"
#include "store/plist/PropertyListFile.h"
#include "support/RunProgram.h"

namespace {

using testing_support::Outcome;

Outcome run(const std::string& arguments) {
    return testing_support::runProgram(VEXMOR_ENGINE, arguments);
}

TEST(Explain, SaysInOneLineWhatDecides) {
    const store::TemporaryDirectory device;
    std::filesystem::create_directories(store::preferencesFolder(device.path()));
    store::Dictionary rules;
    auto record = store::AppRuleRecord::fresh();
    record.setBlanketMode(store::BlanketMode::denyAll);
    record.setFlag(store::keys::stillUseRules, true);
    record.setFlag(store::keys::blockSpecificWiFi, true);
    record.dictionary().set(store::keys::allow, testing_support::entries(std::vector{"*example.net"}));
    record.storeIn(rules, "mail");
    store::writeDictionary(store::pathOf(store::File::appRules, device.path()), rules);

    const std::string explain = "explain --device " + device.path().string() + ' ';
    const std::tuple<std::string, int, std::string> cases[] = {
        {explain + "mail imap.Example.net:993", 0,
         "imap.Example.net:993 is allowed for mail: the app's own allow rule \"*example.net\"\n"},
        {explain + "mail other.example", 0,
         "other.example is denied for mail: \"Deny All Connections\" is on for this app\n"},
        {explain + "--mobile mail imap.example.net", 0,
         "imap.example.net is denied for mail: \"Block If NOT On WiFi\" is on for this app\n"},
        {explain + "web 192.0.2.7", 0, "192.0.2.7 is left alone for web: the app is not under the firewall\n"},
        {explain + "--json mail imap.example.net", 0,
         R"({"app":"mail","cause":"ownRule","host":"imap.example.net","rule":"*example.net","verdict":"allow"})"
         "\n"},
        {explain + "mail 'two words'", 2, "vexmor-engine: two words is no host\n"},
        {explain + "mail example.net:99999", 2, "vexmor-engine: example.net:99999 is no host\n"},
    };
    for (const auto& [arguments, status, output] : cases) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, status) << arguments;
        EXPECT_EQ(outcome.output, output) << arguments;
    }
    for (const char* wrong :
         {"serve", "--device", "explain", "explain mail", "explain --jsn mail a.example", "guess mail a.example"}) {
        const Outcome outcome = run(wrong);
        EXPECT_EQ(outcome.status, 2) << wrong;
        EXPECT_TRUE(outcome.output.starts_with("vexmor-engine: usage: ")) << outcome.output;
    }
}

}  // namespace
