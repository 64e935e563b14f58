#include "engine/translation/Translation.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "engine/HostPattern.h"
#include "engine/translation/Expression.h"
#include "engine/translation/HostSets.h"
#include "store/Schema.h"

namespace engine {

namespace {

namespace keys = store::keys;
using Action = DaemonRule::Action;
using Conditions = std::vector<Condition>;
using Texts = std::vector<std::string>;

// The stages of the names, in the order in which decide() asks.
constexpr const char* needsWiFi = "1";
constexpr const char* ownLists = "2";
constexpr const char* denyAll = "3";
constexpr const char* globalLists = "4";
constexpr const char* allowAll = "5";
constexpr const char* everythingElse = "9";

void sortOnce(Texts& texts) {
    std::sort(texts.begin(), texts.end());
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
}

// That a connection is one of these programs', as few alternatives as will do. Interpreters and their commands are
// combined freely: each command names a script of one of the apps, whichever interpreter runs it.
std::vector<Conditions> conditionsOf(const std::vector<Program>& programs) {
    Texts paths, interpreters, commands, flatpaks, snaps;
    for (const Program& program : programs) {
        if (!program.flatpak.empty()) {
            flatpaks.push_back(program.flatpak);
        } else if (!program.snap.empty()) {
            snaps.push_back(program.snap);
        } else if (program.command.empty()) {
            paths.push_back(program.path);
        } else {
            interpreters.push_back(program.path);
            commands.push_back("(?:" + program.command + ')');
        }
    }
    for (Texts* texts : {&paths, &interpreters, &commands, &flatpaks, &snaps}) sortOnce(*texts);
    std::vector<Conditions> alternatives;
    if (!paths.empty()) alternatives.push_back({isOneOf("process.path", paths, true)});
    if (!interpreters.empty())
        alternatives.push_back({isOneOf("process.path", interpreters, true),
                                {Condition::Type::regexp, "process.command", anyOf(commands), true}});
    if (!flatpaks.empty()) alternatives.push_back({isOneOf("process.env.FLATPAK_ID", flatpaks, true)});
    // What a snap starts outside of it inherits the variable, but lies elsewhere.
    if (!snaps.empty())
        alternatives.push_back({{Condition::Type::regexp, "process.path", "^/snap/", true},
                                isOneOf("process.env.SNAP_INSTANCE_NAME", snaps, true)});
    return alternatives;
}

// FNV-1a. Which part a host belongs to must not change from one version of a library to the next.
std::uint64_t hashOf(std::string_view text) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    return hash;
}

// Divides hosts into parts of about `size`; their number is a power of two, so that it seldom changes.
std::vector<Texts> parts(Texts hosts, std::size_t size) {
    if (hosts.size() <= size) return {std::move(hosts)};
    std::vector<Texts> divided(std::bit_ceil((hosts.size() + size - 1) / size));
    for (std::string& host : hosts) divided[hashOf(host) & (divided.size() - 1)].push_back(std::move(host));
    return divided;
}

// An app's identifier as part of a file's name.
std::string nameOf(std::string_view app) {
    constexpr std::size_t longest = 64;  // bytes, of at most 255 for the whole name
    std::string name;
    for (const char c : app) {
        const bool isPlain =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '_';
        name += isPlain ? c : '_';
    }
    const bool isWhole = name == app && name.size() <= longest;
    name.resize(std::min(name.size(), longest));
    std::array<char, 20> hash{};
    std::snprintf(hash.data(), hash.size(), "_%016llx", static_cast<unsigned long long>(hashOf(app)));
    return isWhole ? name : name + hash.data();
}

// The beginning of the names of an app's rules of one stage.
std::string nameOf(std::string_view stage, std::string_view app) {
    std::string name(rulePrefix);
    name += stage;
    name += '-';
    name += nameOf(app);
    return name;
}

class Translation {
public:
    Translation(std::size_t mostHosts, std::size_t mostPatterns) : mostHosts_(mostHosts), mostPatterns_(mostPatterns) {}

    // A rule for all connections of the programs.
    void addForAll(const std::string& name, Action action, const std::vector<Conditions>& programs) {
        for (const Conditions& program : programs) add({name, action, program, {}});
    }

    void addLists(const std::string& name, const std::vector<Conditions>& programs, const store::Value* allow,
                  const store::Value* deny) {
        if (programs.empty()) return;  // the lists may hold a million entries
        for (const HostSet& set : hostSetsInOrder(allow, deny))
            for (std::size_t i = 0; i < programs.size(); ++i) addSet(name, i, programs[i], set);
    }

    std::vector<DaemonRule> take() {
        std::sort(rules_.begin(), rules_.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
        return std::move(rules_);
    }

private:
    void add(DaemonRule rule) {
        rule.name += '-' + digestOf(rule);
        rules_.push_back(std::move(rule));
    }

    void addSet(const std::string& name, std::size_t alternative, const Conditions& program, const HostSet& set) {
        std::array<char, 40> place{};
        std::snprintf(place.data(), place.size(), "-%04u%c-%05u-%zu", set.layer, set.allows ? 'a' : 'd',
                      static_cast<unsigned>(set.port), alternative);
        name_ = name + place.data();
        action_ = set.allows ? Action::allow : Action::deny;
        conditions_ = program;
        if (set.port != 0) {
            Texts ports{std::to_string(set.port)};
            if (set.allows) ports.push_back(std::to_string(lookupPort));
            sortOnce(ports);
            conditions_.push_back(isOneOf("dest.port", ports, false));
        }
        if (set.hasEveryHost) add({name_, action_, conditions_, {}});
        addWholeHosts(set.names, HostFile::Kind::names, "dest.host");
        addWholeHosts(set.addresses, HostFile::Kind::addresses, "dest.ip");
        addPatterns(set.namesAndBelow, "(?:^|\\.)");
        addPatterns(set.below, "\\.");
    }

    void addWholeHosts(const Texts& hosts, HostFile::Kind kind, const char* operand) {
        if (hosts.empty()) return;
        if (hosts.size() <= mostHosts_) {
            addWith(isOneOf(operand, hosts, false));
            return;
        }
        add({name_, action_, conditions_, HostFile{kind, hosts}});
    }

    void addPatterns(const Texts& hosts, const char* before) {
        if (hosts.empty()) return;
        for (const Texts& part : parts(hosts, mostPatterns_)) {
            if (!part.empty()) addWith({Condition::Type::regexp, "dest.host", before + anyTextOf(part) + '$', false});
        }
    }

    void addWith(Condition condition) {
        Conditions all = conditions_;
        all.push_back(std::move(condition));
        add({name_, action_, std::move(all), {}});
    }

    std::size_t mostHosts_, mostPatterns_;
    std::vector<DaemonRule> rules_;
    // Of the set that is being added.
    std::string name_;
    Action action_ = Action::deny;
    Conditions conditions_;
};

}  // namespace

std::vector<DaemonRule> translate(const Configuration& configuration,
                                  const std::map<std::string, std::vector<Program>>& programs, bool isOnWiFi,
                                  std::size_t mostHosts, std::size_t mostPatterns) {
    Translation translation(mostHosts, mostPatterns);
    const std::string prefix(rulePrefix);
    std::vector<Program> underGlobalLists;
    for (const auto& [app, itsPrograms] : programs) {
        const Policy policy = policyOf(configuration, app, isOnWiFi);
        if (policy.leaves) continue;
        const auto conditions = conditionsOf(itsPrograms);
        if (policy.denies) {
            translation.addForAll(nameOf(needsWiFi, app), Action::deny, conditions);
            continue;
        }
        if (policy.usesOwnLists) {
            const auto record = store::AppRuleRecord::of(configuration.appRules, app);
            const store::Dictionary& own = record.dictionary();
            translation.addLists(nameOf(ownLists, app), conditions, own.find(keys::allow), own.find(keys::deny));
        }
        if (policy.deniesAll) translation.addForAll(nameOf(denyAll, app), Action::deny, conditions);
        if (policy.usesGlobalLists && !policy.deniesAll)
            underGlobalLists.insert(underGlobalLists.end(), itsPrograms.begin(), itsPrograms.end());
        if (policy.allowsAll) translation.addForAll(nameOf(allowAll, app), Action::allow, conditions);
    }
    const store::Dictionary& global = configuration.globalRules;
    translation.addLists(prefix + globalLists, conditionsOf(underGlobalLists), global.find(keys::globalAllow),
                         global.find(keys::globalDeny));
    translation.addForAll(prefix + everythingElse, Action::pass, {{}});
    return translation.take();
}

}  // namespace engine
