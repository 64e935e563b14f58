// The daemon's rules against the pure function: whatever is configured, the first match over the rules says the same.
#include "engine/translation/Translation.h"

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <algorithm>
#include <random>
#include <set>

#include "engine/Decision.h"
#include "engine/Entries.h"
#include "store/Schema.h"

namespace engine {
namespace {

namespace keys = store::keys;

struct Process {
    std::string app;  // whose process it is; empty: nobody's
    std::string path;
    std::string command;
    std::string flatpak;
};

const std::map<std::string, std::vector<Program>> programs{
    {"mail", {{"/usr/bin/mail", "", "", ""}, {"/usr/lib/mail/helper", "", "", ""}}},
    {"org.example.News", {{"/usr/bin/python3.11", "^\\S+ /usr/bin/news( |$)", "", ""}}},
    {"org.example.Chat", {{"", "", "org.example.Chat", ""}}},
};

const std::vector<Process> processes{
    {"mail", "/usr/bin/mail", "mail", ""},
    {"mail", "/usr/lib/mail/helper", "helper", ""},
    {"org.example.News", "/usr/bin/python3.11", "/usr/bin/python3 /usr/bin/news --now", ""},
    {"org.example.Chat", "/app/bin/chat", "chat", "org.example.Chat"},
    {"", "/usr/bin/python3.11", "/usr/bin/python3 /usr/bin/newsreader", ""},
    {"", "/usr/bin/mailx", "mail", ""},
    {"", "/usr/bin/Mail", "mail", "org.example.chat"},
};

// The daemon, as far as our rules go.
class Daemon {
public:
    explicit Daemon(const std::vector<DaemonRule>& rules) : rules_(rules) {}

    Verdict verdictOf(const Process& process, const Destination& to) {
        for (const DaemonRule& rule : rules_) {
            const bool matches = std::all_of(
                rule.conditions.begin(), rule.conditions.end(),
                [&](const auto& condition) { return holds(condition, operand(condition.operand, process, to)); });
            if (!matches || (rule.hosts && !holds(*rule.hosts, to))) continue;
            if (rule.action == DaemonRule::Action::pass) continue;
            return rule.action == DaemonRule::Action::deny ? Verdict::deny : Verdict::allow;
        }
        return Verdict::leave;
    }

private:
    static std::string operand(const std::string& name, const Process& process, const Destination& to) {
        if (name == "process.path") return process.path;
        if (name == "process.command") return process.command;
        if (name == "process.env.FLATPAK_ID") return process.flatpak;
        if (name == "dest.host") return to.name;
        if (name == "dest.ip") return to.address;
        if (name == "dest.port") return std::to_string(to.port);
        ADD_FAILURE() << name;
        return {};
    }

    bool holds(const Condition& condition, const std::string& value) {
        const auto text = QString::fromStdString(value);
        const auto data = QString::fromStdString(condition.data);
        const auto sensitivity = condition.isCaseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;
        if (condition.type == Condition::Type::simple) return text.compare(data, sensitivity) == 0;
        QRegularExpression& expression = compiled_[&condition];
        if (expression.pattern().isEmpty()) expression.setPattern(condition.isCaseSensitive ? data : data.toLower());
        EXPECT_TRUE(expression.isValid()) << condition.data;
        return expression.match(condition.isCaseSensitive ? text : text.toLower()).hasMatch();
    }

    static bool holds(const HostFile& file, const Destination& to) {
        const auto& value = file.kind == HostFile::Kind::names ? to.name : to.address;
        return std::binary_search(file.hosts.begin(), file.hosts.end(), value);
    }

    const std::vector<DaemonRule>& rules_;
    std::map<const Condition*, QRegularExpression> compiled_;
};

class Chance {
public:
    explicit Chance(unsigned seed) : engine_(seed) {}

    bool once(unsigned in) { return below(in) == 0; }
    std::size_t below(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(engine_); }
    template <typename T>
    T oneOf(std::initializer_list<T> choices) {
        return choices.begin()[below(choices.size())];
    }

    std::string name() {
        std::string name = oneOf({"example", "test"});
        for (std::size_t i = below(4); i > 0; --i) name = std::string(oneOf({"a", "b", "ab", "c-d"})) + '.' + name;
        return name;
    }
    std::string address() { return oneOf({"192.0.2.1", "192.0.2.11", "2001:db8::1"}); }
    std::uint16_t port() { return oneOf({std::uint16_t{53}, std::uint16_t{80}, std::uint16_t{443}}); }

    std::string rule() {
        if (once(8)) return oneOf({"", "*", "two words", "*:443", "a..b", "*.", "B.EXAMPLE."});
        std::string host = once(5) ? address() : name();
        if (host.find(':') != std::string::npos) host = '[' + host + ']';
        return oneOf({"", "", "*", "*", "*."}) + host + (once(4) ? ':' + std::to_string(port()) : "");
    }
    store::Value list() {
        std::vector<std::string> rules(once(3) ? 0 : below(8));
        for (std::string& each : rules) each = rule();
        return testing_support::entries(rules);
    }

    Configuration configuration() {
        Configuration all;
        all.isDisabled = once(40);
        for (const auto& [app, itsPrograms] : programs) {
            if (once(6)) continue;
            auto record = store::AppRuleRecord::fresh();
            record.setEnabled(!once(12));
            using enum store::BlanketMode;
            record.setBlanketMode(oneOf({neither, allowAll, denyAll}));
            for (const auto key : keys::appSwitches) record.setFlag(key, once(2));
            record.dictionary().set(keys::allow, list());
            record.dictionary().set(keys::deny, list());
            record.storeIn(all.appRules, app);
        }
        for (const auto key : keys::globalSwitches) all.globalRules.set(key, store::Value(once(2)));
        all.globalRules.set(keys::globalAllow, list());
        all.globalRules.set(keys::globalDeny, list());
        return all;
    }
    Destination destination() { return {once(8) ? "" : name(), address(), port()}; }

private:
    std::mt19937 engine_;
};

TEST(Translation, TheFirstMatchDecidesAsTheFunctionDoes) {
    constexpr unsigned configurations = 2000, connections = 50;
    std::set<std::pair<Cause, Verdict>> met;
    for (unsigned seed = 0; seed < configurations; ++seed) {
        Chance chance(seed);
        const Configuration configuration = chance.configuration();
        const bool isOnWiFi = !chance.once(6);
        // Few hosts as expressions, so that files and several parts are met.
        const std::size_t limit = chance.once(2) ? 1 : 1000;
        const auto rules = translate(configuration, programs, isOnWiFi, limit, limit);
        Daemon daemon(rules);
        for (unsigned i = 0; i < connections; ++i) {
            const Process process = processes[chance.below(processes.size())];
            const Destination to = chance.destination();
            const Decision decision = decide(configuration, {process.app, to, isOnWiFi});
            met.emplace(decision.cause, decision.verdict);
            ASSERT_EQ(daemon.verdictOf(process, to), decision.verdict)
                << "seed " << seed << ", " << process.path << " to " << to.name << ' ' << to.address << ':' << to.port
                << ", decided by cause " << static_cast<int>(decision.cause) << ' ' << decision.rule;
        }
    }
    EXPECT_EQ(met.size(), 12U);  // every cause, and both verdicts of those by a list
}

TEST(Translation, NamesTellWhatChanged) {
    Configuration configuration;
    const auto rulesWith = [&](std::size_t hosts) {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < hosts; ++i) names.push_back("host" + std::to_string(i) + ".example");
        auto record = store::AppRuleRecord::fresh();
        record.dictionary().set(keys::deny, testing_support::entries(names));
        record.storeIn(configuration.appRules, "mail");
        return translate(configuration, programs, true, 10, 10);
    };
    const auto few = rulesWith(9), oneMore = rulesWith(10), many = rulesWith(100), oneMoreThanMany = rulesWith(101);
    ASSERT_EQ(few.size(), 2U);
    EXPECT_NE(few[0].name, oneMore[0].name);
    EXPECT_EQ(few[1], oneMore[1]);
    ASSERT_EQ(many.size(), 2U);
    EXPECT_EQ(many[0].name, oneMoreThanMany[0].name);
    EXPECT_NE(many[0], oneMoreThanMany[0]);
}

}  // namespace
}  // namespace engine
