// What the engine makes of the files: one dictionary is both the app rules and the global ones. The daemon can read the
// rules it gets, and they decide as the pure function does.
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "engine/RuleDaemon.h"
#include "engine/translation/Translation.h"
#include "fuzz/Target.h"
#include "store/rules/RuleList.h"

namespace fuzz {

namespace {

using engine::Destination;
using Rules = std::vector<engine::DaemonRule>;

constexpr std::size_t mostApps = 12;
constexpr std::size_t mostEnds = 64;  // each is tried with each process

// Ends of connections that some of a list's entries may match.
void addEnds(std::vector<Destination>& ends, const store::Value* list) {
    const store::RuleList entries = store::RuleList::load(list);
    for (std::size_t row = 0; row < entries.size() && ends.size() < mostEnds; row += 1 + entries.size() / 4) {
        const auto pattern = engine::HostPattern::parse(entries.rule(row));
        if (!pattern) continue;
        const std::string& host = pattern->host().text;
        if (pattern->host().kind == engine::Host::Kind::address)
            ends.push_back({"", host, pattern->port()});
        else
            ends.insert(ends.end(), {{host, "192.0.2.1", pattern->port()},
                                     {"a." + host, "", engine::lookupPort},
                                     {host, "", 80},
                                     {host + 'x', "", 443}});
    }
}

// A rule's file has its name; the daemon reads the members of a list as text.
void demandReadable(const Rules& rules) {
    for (std::size_t each = 0; each < rules.size(); ++each) {
        const std::string& name = rules[each].name;
        demand(each == 0 || rules[each - 1].name < name || rules[each - 1] == rules[each], "two rules have one name");
        demand(name.size() < 200 && name.find('/') == name.npos, "the name is no file's");
        const auto json = QJsonDocument::fromJson(QByteArray::fromStdString(jsonOf(rules[each], "/hosts")));
        const QJsonObject all = json[u"operator"].toObject();
        demand(json[u"name"].toString().toStdString() == name && !all.isEmpty(), "the rule is unreadable");
        const auto members = QJsonDocument::fromJson(all[u"data"].toString().toUtf8()).array();
        demand(all[u"list"].toArray() == members, "the members are others as text");
    }
}

}  // namespace

bool accepts(std::string_view bytes) {
    const store::ReadResult result = store::readText(bytes);
    const auto* file = std::get_if<store::Dictionary>(&result);
    if (!file) return false;
    const engine::Configuration configuration{*file, *file};
    auto programs = testing_support::programs;
    std::vector<Destination> ends{{"a.example", "192.0.2.1", 443}};
    for (const auto& [key, value] : *file) {
        addEnds(ends, &value);
        const auto record = value.dictionary().value_or(store::Dictionary());
        for (const auto& [name, list] : record) addEnds(ends, &list);
        if (programs.size() < mostApps) programs.insert({key, {{"/opt/" + key, "", "", ""}}});
    }
    for (const bool isOnWiFi : {true, false}) {
        // Few hosts as expressions, so that files and several parts are met.
        const std::size_t limit = isOnWiFi ? 1 : engine::expressionHosts;
        const Rules rules = translate(configuration, programs, isOnWiFi, limit, limit);
        demandReadable(rules);
        testing_support::RuleDaemon daemon(rules);
        for (const auto& process : testing_support::processes)
            for (const Destination& end : ends) {
                const auto expected = process.app.empty() ? engine::Verdict::leave
                                                          : decide(configuration, {process.app, end, isOnWiFi}).verdict;
                demand(daemon.verdictOf(process, end) == expected, "the daemon's rules decide otherwise");
            }
    }
    return true;
}

}  // namespace fuzz
