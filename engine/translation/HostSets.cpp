#include "engine/translation/HostSets.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <tuple>
#include <unordered_map>

#include "engine/HostPattern.h"
#include "store/rules/RuleTexts.h"

namespace engine {

namespace {

using Scope = HostPattern::Scope;
using Key = std::tuple<unsigned, bool, std::uint16_t>;  // layer, verdict, port: the order of the sets

constexpr unsigned wholeHostLayers = 4;

struct Entry {
    HostPattern pattern;
    bool allows;
};

// Where whole hosts stand: with a port before without, denied before allowed.
unsigned layerOfWholeHost(const Entry& entry) {
    return (entry.pattern.port() == 0 ? 2 : 0) + (entry.allows ? 1 : 0);
}

// The layers of patterns with an asterisk, which are given out from the closest on.
class Layers {
public:
    unsigned take(const Entry& entry) {
        const std::string& name = entry.pattern.host().text;
        const unsigned other = highest_[name][!entry.allows];
        // Even layers deny, odd ones allow; `other` is the layer behind which this one must come, plus 1.
        const unsigned layer = other + ((other % 2 == 1) == entry.allows ? 0 : 1);
        note(name, entry.allows, layer + 1);
        return wholeHostLayers + layer;
    }

private:
    // In this name and all that it lies below.
    void note(std::string_view name, bool allows, unsigned layer) {
        while (true) {
            unsigned& highest = highest_[std::string(name)][allows];
            highest = std::max(highest, layer);
            if (name.empty()) return;
            const std::size_t dot = name.find('.');
            name = dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1);
        }
    }

    std::unordered_map<std::string, std::array<unsigned, 2>> highest_;  // by verdict, plus 1; 0 when there is none
};

void insert(HostSet& set, const HostPattern& pattern) {
    const Host& host = pattern.host();
    switch (pattern.scope()) {
        case Scope::host:
            (host.kind == Host::Kind::name ? set.names : set.addresses).push_back(host.text);
            break;
        case Scope::hostAndBelow:
            set.namesAndBelow.push_back(host.text);
            break;
        case Scope::below:
            set.below.push_back(host.text);
            break;
        case Scope::everything:
            set.hasEveryHost = true;
            break;
    }
}

void sortOnce(std::vector<std::string>& hosts) {
    std::sort(hosts.begin(), hosts.end());
    hosts.erase(std::unique(hosts.begin(), hosts.end()), hosts.end());
}

}  // namespace

std::vector<HostSet> hostSetsInOrder(const store::Value* allow, const store::Value* deny) {
    std::map<Key, HostSet> sets;
    std::size_t mostNames = 0;
    const auto place = [&](const Entry& entry, unsigned layer) {
        const std::uint16_t port = entry.pattern.port();
        const auto [set, isNew] = sets.try_emplace({layer, entry.allows, port});
        if (isNew)
            set->second.names.reserve(mostNames);  // memory that is not used is never touched; growing copies all
        insert(set->second, entry.pattern);
    };

    std::vector<Entry> withAsterisk;
    for (const bool allows : {false, true}) {
        const store::RuleTexts rules(allows ? allow : deny);
        mostNames = rules.size();
        rules.forEach([&](std::size_t, std::string_view rule) {
            auto pattern = HostPattern::parse(rule);
            if (!pattern) return;
            Entry entry{*std::move(pattern), allows};
            if (entry.pattern.scope() == Scope::host)
                place(entry, layerOfWholeHost(entry));
            else
                withAsterisk.push_back(std::move(entry));
        });
    }
    // The closest first; stable, so that of equally close ones those that deny come first.
    std::stable_sort(withAsterisk.begin(), withAsterisk.end(),
                     [](const Entry& a, const Entry& b) { return a.pattern.closeness() > b.pattern.closeness(); });
    Layers layers;
    for (const Entry& entry : withAsterisk) place(entry, layers.take(entry));

    std::vector<HostSet> inOrder;
    for (auto& [key, set] : sets) {
        std::tie(set.layer, set.allows, set.port) = key;
        for (auto* hosts : {&set.names, &set.addresses, &set.namesAndBelow, &set.below}) sortOnce(*hosts);
        inOrder.push_back(std::move(set));
    }
    return inOrder;
}

}  // namespace engine
