#include "engine/Explanation.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <array>

namespace engine {

namespace {

struct Words {
    Cause cause;
    const char* name;
    const char* reason;
};

constexpr std::array causes{
    Words{Cause::firewallOff, "firewallOff", "the firewall is off"},
    Words{Cause::notUnderFirewall, "notUnderFirewall", "the app is not under the firewall"},
    Words{Cause::appOff, "appOff", "the firewall is off for this app"},
    Words{Cause::appNeedsWiFi, "appNeedsWiFi", "\"Block If NOT On WiFi\" is on for this app"},
    Words{Cause::allNeedWiFi, "allNeedWiFi", "\"Block If NOT On WiFi\" is on for all apps"},
    Words{Cause::ownRule, "ownRule", "the app's own"},
    Words{Cause::denyAll, "denyAll", "\"Deny All Connections\" is on for this app"},
    Words{Cause::globalRule, "globalRule", "the global"},
    Words{Cause::allowAll, "allowAll", "\"Allow All Connections\" is on for this app"},
    Words{Cause::nothing, "nothing", "no rule matches"},
};

constexpr bool areInOrder() {
    for (std::size_t i = 0; i < causes.size(); ++i)
        if (causes[i].cause != static_cast<Cause>(i)) return false;
    return causes.size() == static_cast<std::size_t>(Cause::nothing) + 1;
}
static_assert(areInOrder());

const Words& wordsOf(Cause cause) {
    return causes[static_cast<std::size_t>(cause)];
}

bool isByRule(const Decision& decision) {
    return decision.cause == Cause::ownRule || decision.cause == Cause::globalRule;
}

struct VerdictWords {
    const char* name;
    const char* participle;
};

const VerdictWords& wordsOf(Verdict verdict) {
    static constexpr std::array words{VerdictWords{"leave", "left alone"}, VerdictWords{"allow", "allowed"},
                                      VerdictWords{"deny", "denied"}};
    return words[static_cast<std::size_t>(verdict)];
}

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

}  // namespace

std::string_view wordOf(Verdict verdict) {
    return wordsOf(verdict).participle;
}

std::string reasonOf(const Decision& decision) {
    std::string reason = wordsOf(decision.cause).reason;
    if (!isByRule(decision)) return reason;
    return reason + ' ' + wordsOf(decision.verdict).name + " rule \"" + decision.rule + '"';
}

std::string jsonOf(const Decision& decision, std::string_view app, std::string_view host) {
    QJsonObject object{{QStringLiteral("app"), text(app)},
                       {QStringLiteral("host"), text(host)},
                       {QStringLiteral("verdict"), QString::fromLatin1(wordsOf(decision.verdict).name)},
                       {QStringLiteral("cause"), QString::fromLatin1(wordsOf(decision.cause).name)}};
    if (isByRule(decision)) object.insert(QStringLiteral("rule"), text(decision.rule));
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

}  // namespace engine
