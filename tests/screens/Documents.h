#pragma once

#include <QFile>
#include <QRegularExpression>
#include <QStringList>

// What the documents say of the rows with switches, for tests that hold the screens to it.
namespace documents {

// The part of a file of ours from `begin` to the `end` that follows.
inline QString part(const QString& file, const QString& begin, const QString& end) {
    QFile opened(QStringLiteral(VEXMOR_SOURCE) + file);
    if (!opened.open(QIODevice::ReadOnly)) qFatal("cannot read %s", qPrintable(file));
    const QString text = QString::fromUtf8(opened.readAll());
    const qsizetype from = text.indexOf(begin) + begin.size();
    return text.mid(from, text.indexOf(end, from) - from);
}

struct Switch {
    std::string key;
    QString title;
};

// The switches below a heading of the contract with the engine.
inline std::vector<Switch> switches(const QString& heading) {
    static const QRegularExpression line(QStringLiteral("`(\\w+)` \\| Boolean \\| \\w+ \\| \"([^\"]+)\": "));
    std::vector<Switch> found;
    const QString table = part(QStringLiteral("/docs/engine-contract.md"), heading, QStringLiteral("\n\n**"));
    for (const auto& row : line.globalMatch(table)) found.push_back({row.captured(1).toStdString(), row.captured(2)});
    return found;
}

// The rows that a chapter of the help explains, section by section.
inline QList<QStringList> rowsInHelp(const QString& chapter) {
    static const QRegularExpression term(QStringLiteral("<dt>(.*?)</dt>"));
    QList<QStringList> sections;
    const QString text = part(QStringLiteral("/docs/site/Vexmor/moreInfo/firewall.html"),
                              QStringLiteral("<h2 id=\"%1\">").arg(chapter), QStringLiteral("<h2"));
    for (const QString& section : text.split(QStringLiteral("<dl>")).mid(1)) {
        sections.append(QStringList());
        for (const auto& row : term.globalMatch(section)) sections.last().append(row.captured(1));
    }
    return sections;
}

}  // namespace documents
