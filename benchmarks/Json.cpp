#include "benchmarks/Json.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <ostream>

namespace bench {

namespace {

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

QJsonObject object(const Row& row) {
    QJsonObject object{{QStringLiteral("name"), text(row.subject)},
                       {QStringLiteral("work"), text(row.work)},
                       {QStringLiteral("peer"), text(row.peer)},
                       {QStringLiteral("goal"), row.goal.factor},
                       {QStringLiteral("goalIs"),
                        row.goal.kind == Goal::Kind::atMost ? QStringLiteral("at most") : QStringLiteral("faster by")},
                       {QStringLiteral("holds"), row.holds()}};
    if (!row.problem.empty()) {
        object.insert(QStringLiteral("problem"), text(row.problem));
        return object;
    }
    object.insert(QStringLiteral("unit"),
                  row.unit == Unit::seconds ? QStringLiteral("seconds") : QStringLiteral("bytes"));
    object.insert(QStringLiteral("ours"), row.ours);
    object.insert(QStringLiteral("theirs"), row.theirs);
    object.insert(QStringLiteral("ratio"), row.ratio());
    return object;
}

}  // namespace

void writeJson(std::ostream& output, const std::vector<Row>& rows) {
    QJsonArray array;
    for (const Row& row : rows) array.append(object(row));
    output << QJsonDocument(array).toJson().toStdString();
}

}  // namespace bench
