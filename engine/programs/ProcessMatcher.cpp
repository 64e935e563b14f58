#include "engine/programs/ProcessMatcher.h"

#include <QRegularExpression>
#include <QString>

namespace engine {

struct ProcessMatcher::Candidate {
    std::string app;
    Program program;
    QRegularExpression command;
};

namespace {

QString commandOf(const Process& process) {
    QString command;
    for (const std::string& argument : process.arguments) {
        if (!command.isEmpty()) command += QLatin1Char(' ');
        command += QString::fromStdString(argument);
    }
    return command;
}

bool hasVariable(const Process& process, const char* name, const std::string& value) {
    const auto variable = process.environment.find(name);
    return variable != process.environment.end() && variable->second == value;
}

}  // namespace

ProcessMatcher::ProcessMatcher(const std::map<std::string, std::vector<Program>>& programs) {
    for (const auto& [app, its] : programs)
        for (const Program& program : its)
            candidates_.push_back({app, program, QRegularExpression(QString::fromStdString(program.command))});
}

ProcessMatcher::~ProcessMatcher() = default;

std::optional<std::string> ProcessMatcher::appOf(const Process& process) const {
    const QString command = commandOf(process);
    for (const Candidate& candidate : candidates_) {
        const Program& program = candidate.program;
        // What a snap starts outside of it inherits the variable, but lies elsewhere.
        const bool isIts =
            !program.flatpak.empty() ? hasVariable(process, "FLATPAK_ID", program.flatpak)
            : !program.snap.empty()
                ? process.path.starts_with("/snap/") && hasVariable(process, "SNAP_INSTANCE_NAME", program.snap)
                : process.path == program.path && candidate.command.match(command).hasMatch();
        if (isIts) return candidate.app;
    }
    return {};
}

}  // namespace engine
