#pragma once

#include <QStringList>

#include "store/plist/PropertyList.h"

// Lists of rules as the files hold them, and as text.

// An entry, last changed in this minute.
inline std::string entry(const std::string& rule, int minute = 0, const std::string& more = {}) {
    const std::string minutes = (minute < 10 ? "0" : "") + std::to_string(minute);
    return "<dict><key>date</key><date>2026-01-01T10:" + minutes + ":00Z</date>" + more + "<key>rule</key><string>" +
           rule + "</string></dict>";
}

inline std::string rulesFile(const std::string& key, const std::string& entries) {
    return "<dict><key>" + key + "</key><array>" + entries + "</array></dict>";
}

inline QStringList rulesIn(const store::Dictionary& lists, std::string_view key) {
    QStringList rules;
    const store::Value* list = lists.find(key);
    if (!list) return rules;
    const auto entries = list->array();
    for (const store::Value& each : *entries)
        rules.append(QString::fromStdString(each.dictionary()->find("rule")->string().value_or("?")));
    return rules;
}

inline QStringList list(std::initializer_list<const char*> texts) {
    QStringList result;
    for (const char* text : texts) result.append(QString::fromUtf8(text));
    return result;
}
