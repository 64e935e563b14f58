// What the daemon reports, from its message to the log. Each connection of an app's is one line there.
#include <QRegularExpression>

#include "daemon.pb.h"
#include "engine/RuleDaemon.h"
#include "engine/service/ConnectionLog.h"
#include "fuzz/Target.h"
#include "store/Files.h"
#include "store/SharedFiles.h"
#include "store/text/Utf.h"

namespace fuzz {

namespace {

void demandLines(std::string_view log, std::size_t count) {
    static const QRegularExpression entry(
        QStringLiteral("^\\d\\d:\\d\\d:\\d\\d (mail|org\\.example\\.\\w+) → \\P{Cc}*$"));
    static const QRegularExpression heading(QStringLiteral("^[A-Z][a-z]+, \\d+ [A-Z][a-z]+ \\d{4}$"));
    demand(count == 0 || log.starts_with("\xFF\xFE"), "the log is not UTF-16");
    std::size_t malformedAt = 0;
    const auto text =
        store::utf8FromUtf16(log.substr(std::min<std::size_t>(log.size(), 2)), store::ByteOrder::little, malformedAt);
    demand(text.has_value(), "the log is malformed");
    std::size_t entries = 0;
    for (const QString& line : QString::fromStdString(*text).split(u'\n', Qt::SkipEmptyParts)) {
        const bool isEntry = entry.match(line).hasMatch();
        demand(isEntry || heading.match(line).hasMatch(), "a line is neither a connection nor a day");
        if (isEntry) ++entries;
    }
    demand(entries == count, "the lines are not as many as the connections");
}

}  // namespace

bool accepts(std::string_view bytes) {
    static const google::protobuf::LogSilencer silencer;
    protocol::Statistics message;
    if (!message.ParseFromArray(bytes.data(), static_cast<int>(bytes.size()))) return false;
    std::vector<engine::Report> reports;
    for (const auto& event : message.events()) reports.push_back(engine::reportOf(event));

    static const engine::ProcessMatcher matcher(testing_support::programs);
    const auto count = std::count_if(reports.begin(), reports.end(),
                                     [](const auto& report) { return matcher.appOf(report.process).has_value(); });

    static const store::TemporaryDirectory device;
    const auto file = store::logFile(device.path());
    std::filesystem::create_directories(file.parent_path());
    std::filesystem::remove(file);
    engine::ConnectionLog log(device.path());
    log.update({testing_support::programs, {}, {}}, true);
    log.take(reports);
    demand(!log.write(), "nothing can be written");
    demandLines(store::contentOf(file), static_cast<std::size_t>(count));
    return count > 0;
}

}  // namespace fuzz
