#include "engine/Decision.h"

#include "store/Schema.h"
#include "store/rules/RuleList.h"

namespace engine {

namespace {

namespace keys = store::keys;

struct Match {
    Closeness closeness;
    std::string rule;
};

std::optional<Match> closestMatch(const store::Value* list, const Destination& destination) {
    const store::RuleList rules = store::RuleList::load(list);
    std::optional<Match> closest;
    for (std::size_t i = 0; i < rules.size(); ++i) {
        const auto pattern = HostPattern::parse(rules.rule(i));
        if (!pattern || !pattern->matches(destination)) continue;
        if (!closest || pattern->closeness() > closest->closeness)
            closest = Match{pattern->closeness(), std::string(rules.rule(i))};
    }
    return closest;
}

std::optional<Decision> decideByLists(Cause cause, const store::Value* allow, const store::Value* deny,
                                      const Destination& destination) {
    auto allowed = closestMatch(allow, destination);
    auto denied = closestMatch(deny, destination);
    if (denied && (!allowed || denied->closeness >= allowed->closeness))
        return Decision{Verdict::deny, cause, std::move(denied->rule)};
    if (allowed) return Decision{Verdict::allow, cause, std::move(allowed->rule)};
    return {};
}

std::optional<Decision> decideByOwnLists(const store::AppRuleRecord& record, const Destination& destination) {
    const bool apply = record.blanketMode() == store::BlanketMode::neither || record.flag(keys::stillUseRules);
    if (!apply) return {};
    const store::Dictionary& own = record.dictionary();
    return decideByLists(Cause::ownRule, own.find(keys::allow), own.find(keys::deny), destination);
}

std::optional<Decision> decideByGlobalLists(const store::AppRuleRecord& record, const store::Dictionary& global,
                                            const Destination& destination) {
    const bool apply = record.blanketMode() == store::BlanketMode::neither || boolValue(global, keys::respectGlobal);
    if (!apply) return {};
    return decideByLists(Cause::globalRule, global.find(keys::globalAllow), global.find(keys::globalDeny), destination);
}

}  // namespace

Decision decide(const Configuration& configuration, const Connection& connection) {
    if (configuration.isDisabled) return {Verdict::leave, Cause::firewallOff, {}};
    const store::Value* stored = configuration.appRules.find(connection.app);
    if (!stored || stored->kind() != store::Kind::dictionary) return {Verdict::leave, Cause::notUnderFirewall, {}};
    const auto record = store::AppRuleRecord::of(configuration.appRules, connection.app);
    if (!record.enabled()) return {Verdict::leave, Cause::appOff, {}};

    const store::Dictionary& global = configuration.globalRules;
    if (!connection.isOnWiFi) {
        if (record.flag(keys::blockSpecificWiFi)) return {Verdict::deny, Cause::appNeedsWiFi, {}};
        if (boolValue(global, keys::blockNonWiFi)) return {Verdict::deny, Cause::allNeedWiFi, {}};
    }
    if (auto decision = decideByOwnLists(record, connection.destination)) return *std::move(decision);
    if (record.blanketMode() == store::BlanketMode::denyAll) return {Verdict::deny, Cause::denyAll, {}};
    if (auto decision = decideByGlobalLists(record, global, connection.destination)) return *std::move(decision);
    if (record.blanketMode() == store::BlanketMode::allowAll) return {Verdict::allow, Cause::allowAll, {}};
    return {};
}

}  // namespace engine
