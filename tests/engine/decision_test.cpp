#include "engine/Decision.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>

#include "engine/Entries.h"
#include "engine/Explanation.h"
#include "store/Schema.h"

namespace engine {
namespace {

namespace keys = store::keys;

constexpr std::string_view app = "org.example.HarbourMail";

using Rules = std::vector<const char*>;
using testing_support::entries;

// One app under the firewall, without any rule.
struct Given {
    store::AppRuleRecord record = store::AppRuleRecord::fresh();
    store::Dictionary global;
    bool isDisabled = false;

    Configuration configuration() const {
        Configuration all{{}, global, isDisabled};
        record.storeIn(all.appRules, app);
        all.appRules.set(keys::marker, store::Value(true));
        return all;
    }
    void own(std::string_view list, const Rules& rules) { record.dictionary().set(list, entries(rules)); }
    void all(std::string_view list, const Rules& rules) { global.set(list, entries(rules)); }
};

Connection to(std::string name, bool isOnWiFi = true) {
    return {std::string(app), {std::move(name), "192.0.2.7", 443}, isOnWiFi};
}

TEST(Decision, TheFirstCauseThatAppliesDecides) {
    using enum Verdict;
    using enum Cause;
    // Each case adds to what the one before has given, from the last cause to the first.
    Given given;
    const Decision none{leave, nothing, {}}, globally{deny, globalRule, "*example.net"};
    const Decision all{deny, denyAll, {}}, own{allow, ownRule, "a.example.net"};
    const Decision everything{allow, allowAll, {}}, off{leave, appOff, {}}, allOff{leave, firewallOff, {}};
    const Decision noWiFi{deny, allNeedWiFi, {}}, noWiFiForApp{deny, appNeedsWiFi, {}};
    const auto flag = [&](std::string_view key) { given.global.set(key, store::Value(true)); };
    const auto mode = [&](store::BlanketMode set) { given.record.setBlanketMode(set); };
    const std::tuple<const char*, std::function<void()>, Decision, Decision> cases[] = {
        {"nothing", [] {}, none, none},
        {"a global rule for another host", [&] { given.all(keys::globalDeny, {"other.example"}); }, none, none},
        {"a global rule", [&] { given.all(keys::globalDeny, {"*example.net"}); }, globally, globally},
        {"all allowed", [&] { mode(store::BlanketMode::allowAll); }, everything, everything},
        {"which respects global", [&] { flag(keys::respectGlobal); }, globally, globally},
        {"all denied", [&] { mode(store::BlanketMode::denyAll); }, all, all},
        {"a closer global rule", [&] { given.all(keys::globalAllow, {"a.example.net"}); }, all, all},
        {"a rule of its own that does not apply", [&] { given.own(keys::allow, {"a.example.net"}); }, all, all},
        {"and now does", [&] { given.record.setFlag(keys::stillUseRules, true); }, own, own},
        {"Wi-Fi only, all apps", [&] { flag(keys::blockNonWiFi); }, own, noWiFi},
        {"Wi-Fi only, this app", [&] { given.record.setFlag(keys::blockSpecificWiFi, true); }, own, noWiFiForApp},
        {"the app off", [&] { given.record.setEnabled(false); }, off, off},
        {"the firewall off", [&] { given.isDisabled = true; }, allOff, allOff},
    };
    for (const auto& [what, change, online, mobile] : cases) {
        SCOPED_TRACE(what);
        change();
        EXPECT_EQ(decide(given.configuration(), to("a.example.net")), online);
        EXPECT_EQ(decide(given.configuration(), to("a.example.net", false)), mobile);
    }
    given.isDisabled = false;
    for (const char* other : {"org.example.PaperCrane", "150"}) {
        Connection connection = to("a.example.net", false);
        connection.app = other;
        EXPECT_EQ(decide(given.configuration(), connection), (Decision{leave, notUnderFirewall, {}})) << other;
    }
}

TEST(Decision, TheClosestEntryDecidesAndOfEqualOnesTheDenial) {
    const std::tuple<Rules, Rules, const char*, Verdict> cases[] = {
        {{"a.example.net"}, {"*example.net"}, "a.example.net", Verdict::allow},
        {{"*example.net"}, {"a.example.net"}, "a.example.net", Verdict::deny},
        {{"a.example.net"}, {"a.example.net"}, "a.example.net", Verdict::deny},
        {{"a.example.net:443"}, {"a.example.net"}, "a.example.net:443", Verdict::allow},
        {{"a.example.net:80"}, {"*"}, "*", Verdict::deny},
        {{"*", "*net", "*example.net"}, {"*org", "*net"}, "*example.net", Verdict::allow},
        {{"a.example.net"}, {"192.0.2.7"}, "192.0.2.7", Verdict::deny},
        {{"192.0.2.7"}, {"*example.net"}, "192.0.2.7", Verdict::allow},
    };
    for (const auto& [allow, deny, decides, verdict] : cases) {
        SCOPED_TRACE(decides);
        Given own;
        own.own(keys::allow, allow);
        own.own(keys::deny, deny);
        EXPECT_EQ(decide(own.configuration(), to("a.example.net")), (Decision{verdict, Cause::ownRule, decides}));
        Given global;
        global.all(keys::globalAllow, allow);
        global.all(keys::globalDeny, deny);
        EXPECT_EQ(decide(global.configuration(), to("a.example.net")), (Decision{verdict, Cause::globalRule, decides}));
    }
}

TEST(Decision, APortThatIsAllowedCanBeLookedUp) {
    Given given;
    given.own(keys::allow, {"a.example.net:443"});
    given.own(keys::deny, {"*", "b.example.net:443"});
    const auto verdictAt = [&](const char* name, std::uint16_t port) {
        return decide(given.configuration(), {std::string(app), {name, "192.0.2.7", port}, true}).verdict;
    };
    EXPECT_EQ(verdictAt("a.example.net", 443), Verdict::allow);
    EXPECT_EQ(verdictAt("a.example.net", 53), Verdict::allow);
    EXPECT_EQ(verdictAt("a.example.net", 80), Verdict::deny);
    given.own(keys::deny, {"b.example.net:443"});
    EXPECT_EQ(verdictAt("b.example.net", 53), Verdict::leave) << "to deny a port is not to deny the lookup";
}

// The table in the document for engines gives the causes in this order, in these words.
TEST(Decision, TheDocumentSaysTheSame) {
    std::ifstream file(VEXMOR_ENGINE_CONTRACT);
    const std::string document(std::istreambuf_iterator<char>(file), {});
    std::size_t at = document.find("## What decides");
    for (int cause = 0; cause <= static_cast<int>(Cause::nothing) && at != std::string::npos; ++cause) {
        const std::string reason = reasonOf({Verdict::leave, static_cast<Cause>(cause), {}});
        const std::string row = "\n| " + reason.substr(0, reason.find(" leave rule"));
        at = document.find(row, at);
        EXPECT_NE(at, std::string::npos) << row;
    }
}

}  // namespace
}  // namespace engine
