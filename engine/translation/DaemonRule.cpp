#include "engine/translation/DaemonRule.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace engine {

namespace {

QJsonObject operatorObject(const char* type, const std::string& operand, const QString& data, bool isCaseSensitive) {
    return {{QStringLiteral("type"), QString::fromLatin1(type)},
            {QStringLiteral("operand"), QString::fromStdString(operand)},
            {QStringLiteral("data"), data},
            {QStringLiteral("sensitive"), isCaseSensitive},
            {QStringLiteral("list"), QJsonValue()}};
}

QJsonObject objectOf(const Condition& condition) {
    return operatorObject(condition.type == Condition::Type::simple ? "simple" : "regexp", condition.operand,
                          QString::fromStdString(condition.data), condition.isCaseSensitive);
}

}  // namespace

std::string jsonOf(const DaemonRule& rule, const std::string& hostFolder) {
    QJsonArray members;
    for (const Condition& condition : rule.conditions) members.append(objectOf(condition));
    if (rule.hosts) {
        const bool ofNames = rule.hosts->kind == HostFile::Kind::names;
        members.append(operatorObject("lists", ofNames ? "lists.domains" : "lists.ips",
                                      QString::fromStdString(hostFolder), false));
    }
    // The daemon takes a list's members from its data, as text.
    QJsonObject all =
        operatorObject("list", "list", QString::fromUtf8(QJsonDocument(members).toJson(QJsonDocument::Compact)), false);
    all.insert(QStringLiteral("list"), members);
    if (members.isEmpty()) all = operatorObject("simple", "true", QStringLiteral("true"), false);
    const QString ever = QStringLiteral("2026-01-01T00:00:00Z");  // nothing of a rule depends on the time of its making
    const QJsonObject object{
        {QStringLiteral("name"), QString::fromStdString(rule.name)},
        {QStringLiteral("enabled"), true},
        {QStringLiteral("created"), ever},
        {QStringLiteral("updated"), ever},
        {QStringLiteral("duration"), QStringLiteral("always")},
        {QStringLiteral("action"),
         rule.action == DaemonRule::Action::deny ? QStringLiteral("deny") : QStringLiteral("allow")},
        {QStringLiteral("precedence"), rule.action == DaemonRule::Action::allow},
        {QStringLiteral("operator"), all},
    };
    return QJsonDocument(object).toJson(QJsonDocument::Indented).toStdString();
}

std::string digestOf(const DaemonRule& rule) {
    const std::string text = jsonOf(rule, {});
    const QByteArrayView bytes(text.data(), static_cast<qsizetype>(text.size()));
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().left(12).toStdString();
}

}  // namespace engine
