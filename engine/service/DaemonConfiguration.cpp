#include "engine/service/DaemonConfiguration.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "store/files/FileReading.h"

namespace engine {

namespace {

namespace fs = std::filesystem;

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

fs::path withoutSlash(const fs::path& folder) {
    return (folder / "").lexically_normal().parent_path();
}

}  // namespace

std::vector<std::string> complaintsAbout(const fs::path& configuration, const fs::path& rules) {
    const auto content = store::readFile(configuration);
    if (!content) return {"It cannot be read; install the daemon, Debian's package opensnitch."};
    const std::string_view text = content->view();
    const auto bytes = QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size()));
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (!document.isObject()) return {"The daemon ignores it as it is; make it a JSON object."};

    std::vector<std::string> complaints;
    const QJsonObject settings = document.object();
    const QString allows = QStringLiteral("allow");  // which is also what the daemon does where nothing is set
    const QString action = settings.value(QStringLiteral("DefaultAction")).toString(allows);
    if (action != allows)
        complaints.push_back("Set \"DefaultAction\": \"allow\"; with " + quoted(action.toStdString()) +
                             " the daemon stops connections that nothing here is about.");
    const QJsonObject ruleSettings = settings.value(QStringLiteral("Rules")).toObject();
    const std::string folder = ruleSettings.value(QStringLiteral("Path")).toString().toStdString();
    if (!folder.empty() && withoutSlash(folder) != withoutSlash(rules))
        complaints.push_back("Set \"Rules\": {\"Path\": " + quoted(rules.string()) +
                             "}; the daemon reads its rules from " + quoted(folder) + ".");
    return complaints;
}

}  // namespace engine
