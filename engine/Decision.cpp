#include "engine/Decision.h"

#include <mutex>
#include <utility>

#include "store/Schema.h"
#include "store/rules/RuleTexts.h"

namespace engine {

namespace {

namespace keys = store::keys;

struct Match {
    Closeness closeness;
    std::size_t index;
    std::string_view rule;

    // Of equally close ones the first of its list.
    bool isBehind(const Match& other) const {
        return other.closeness != closeness ? other.closeness > closeness : other.index < index;
    }
};

struct FoundRule {
    Closeness closeness;
    std::string rule;
};

std::optional<FoundRule> closestMatch(Verdict verdict, const store::Value* list, const Destination& destination) {
    const bool isLookup = verdict == Verdict::allow && destination.port == lookupPort;
    std::mutex mutex;
    std::optional<Match> closest;
    const store::RuleTexts rules(list);
    rules.forEachInParallel([&](std::size_t index, std::string_view rule) {
        if (!HostPattern::mayMatchHost(rule, destination)) return;
        const auto pattern = HostPattern::parse(rule);
        if (!pattern || !(isLookup ? pattern->matchesHost(destination) : pattern->matches(destination))) return;
        const Match match{pattern->closeness(), index, rule};
        const std::lock_guard lock(mutex);
        if (!closest || closest->isBehind(match)) closest = match;
    });
    if (!closest) return {};
    return FoundRule{closest->closeness, std::string(closest->rule)};
}

std::optional<Decision> decideByLists(Cause cause, const store::Value* allow, const store::Value* deny,
                                      const Destination& destination) {
    auto allowed = closestMatch(Verdict::allow, allow, destination);
    auto denied = closestMatch(Verdict::deny, deny, destination);
    if (denied && (!allowed || denied->closeness >= allowed->closeness))
        return Decision{Verdict::deny, cause, std::move(denied->rule)};
    if (allowed) return Decision{Verdict::allow, cause, std::move(allowed->rule)};
    return {};
}

}  // namespace

Policy policyOf(const Configuration& configuration, std::string_view app, bool isOnWiFi) {
    Policy policy;
    const store::Value* stored = configuration.appRules.find(app);
    const bool hasRecord = stored && stored->kind() == store::Kind::dictionary;
    const auto record = store::AppRuleRecord::of(configuration.appRules, app);
    if (configuration.isDisabled)
        policy.leaves = Cause::firewallOff;
    else if (!hasRecord)
        policy.leaves = Cause::notUnderFirewall;
    else if (!record.enabled())
        policy.leaves = Cause::appOff;
    if (!isOnWiFi && record.flag(keys::blockSpecificWiFi))
        policy.denies = Cause::appNeedsWiFi;
    else if (!isOnWiFi && boolValue(configuration.globalRules, keys::blockNonWiFi))
        policy.denies = Cause::allNeedWiFi;

    const store::BlanketMode mode = record.blanketMode();
    const bool isDetailed = mode == store::BlanketMode::neither;
    policy.usesOwnLists = isDetailed || record.flag(keys::stillUseRules);
    policy.deniesAll = mode == store::BlanketMode::denyAll;
    policy.usesGlobalLists = isDetailed || boolValue(configuration.globalRules, keys::respectGlobal);
    policy.allowsAll = mode == store::BlanketMode::allowAll;
    return policy;
}

Decision decide(const Configuration& configuration, const Connection& connection) {
    const Policy policy = policyOf(configuration, connection.app, connection.isOnWiFi);
    if (policy.leaves) return {Verdict::leave, *policy.leaves, {}};
    if (policy.denies) return {Verdict::deny, *policy.denies, {}};
    if (policy.usesOwnLists) {
        const auto record = store::AppRuleRecord::of(configuration.appRules, connection.app);
        const store::Dictionary& own = record.dictionary();
        auto decision =
            decideByLists(Cause::ownRule, own.find(keys::allow), own.find(keys::deny), connection.destination);
        if (decision) return *std::move(decision);
    }
    if (policy.deniesAll) return {Verdict::deny, Cause::denyAll, {}};
    if (policy.usesGlobalLists) {
        const store::Dictionary& global = configuration.globalRules;
        auto decision = decideByLists(Cause::globalRule, global.find(keys::globalAllow), global.find(keys::globalDeny),
                                      connection.destination);
        if (decision) return *std::move(decision);
    }
    if (policy.allowsAll) return {Verdict::allow, Cause::allowAll, {}};
    return {};
}

}  // namespace engine
