#pragma once

#include <QRegularExpression>
#include <algorithm>
#include <map>
#include <stdexcept>

#include "engine/Decision.h"
#include "engine/programs/Programs.h"
#include "engine/translation/DaemonRule.h"

namespace testing_support {

struct Process {
    std::string app;  // whose process it is; empty: nobody's
    std::string path;
    std::string command;
    std::string flatpak;
};

inline const std::map<std::string, std::vector<engine::Program>> programs{
    {"mail", {{"/usr/bin/mail", "", "", ""}, {"/usr/lib/mail/helper", "", "", ""}}},
    {"org.example.News", {{"/usr/bin/python3.11", "^\\S+ /usr/bin/news( |$)", "", ""}}},
    {"org.example.Chat", {{"", "", "org.example.Chat", ""}}},
    {"web", {{"/usr/bin/web", "", "", ""}}},
};

inline const std::vector<Process> processes{
    {"mail", "/usr/bin/mail", "mail", ""},
    {"mail", "/usr/lib/mail/helper", "helper", ""},
    {"org.example.News", "/usr/bin/python3.11", "/usr/bin/python3 /usr/bin/news --now", ""},
    {"org.example.Chat", "/app/bin/chat", "chat", "org.example.Chat"},
    {"", "/usr/bin/python3.11", "/usr/bin/python3 /usr/bin/newsreader", ""},
    {"", "/usr/bin/mailx", "mail", ""},
    {"", "/usr/bin/Mail", "mail", "org.example.chat"},
};

// The daemon, as far as our rules go.
class RuleDaemon {
public:
    explicit RuleDaemon(const std::vector<engine::DaemonRule>& rules) : rules_(rules) {}

    engine::Verdict verdictOf(const Process& process, const engine::Destination& to) const {
        for (const engine::DaemonRule& rule : rules_) {
            const bool matches =
                std::ranges::all_of(rule.conditions, [&](const auto& each) { return holds(each, process, to); });
            if (!matches || (rule.hosts && !holds(*rule.hosts, to)) || rule.action == engine::DaemonRule::Action::pass)
                continue;
            return rule.action == engine::DaemonRule::Action::deny ? engine::Verdict::deny : engine::Verdict::allow;
        }
        return engine::Verdict::leave;
    }

private:
    static std::string operand(const std::string& name, const Process& process, const engine::Destination& to) {
        if (name == "process.path") return process.path;
        if (name == "process.command") return process.command;
        if (name == "process.env.FLATPAK_ID") return process.flatpak;
        if (name == "dest.host") return to.name;
        if (name == "dest.ip") return to.address;
        if (name == "dest.port") return std::to_string(to.port);
        throw std::logic_error("no operand of the daemon's: " + name);
    }

    static bool holds(const engine::Condition& condition, const Process& process, const engine::Destination& to) {
        const auto text = QString::fromStdString(operand(condition.operand, process, to));
        const auto data = QString::fromStdString(condition.data);
        if (condition.type == engine::Condition::Type::simple)
            return text.compare(data, condition.isCaseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive) == 0;
        static std::map<std::string, QRegularExpression> compiled;
        if (compiled.size() > 1000) compiled.clear();
        QRegularExpression& expression = compiled[(condition.isCaseSensitive ? 'c' : 'i') + condition.data];
        if (expression.pattern().isEmpty()) expression.setPattern(condition.isCaseSensitive ? data : data.toLower());
        if (!expression.isValid()) throw std::logic_error("no expression: " + condition.data);
        return expression.match(condition.isCaseSensitive ? text : text.toLower()).hasMatch();
    }

    static bool holds(const engine::HostFile& file, const engine::Destination& to) {
        const auto& value = file.kind == engine::HostFile::Kind::names ? to.name : to.address;
        return std::binary_search(file.hosts.begin(), file.hosts.end(), value);
    }

    const std::vector<engine::DaemonRule>& rules_;
};

}  // namespace testing_support
