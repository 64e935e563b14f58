#pragma once

#include <QtWidgets>
#include <stdexcept>

#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"

// The first row that says this, found as a person finds it: in sight, or else by scrolling down from the top. Throws
// when there is none.
inline platform::IndexPath rowNamed(platform::TableView& table, QStringView name) {
    const auto look = [&] {
        std::optional<platform::IndexPath> found;
        table.forEachCell([&](platform::IndexPath row, const platform::TableViewCell& cell) {
            if (!found && cell.accessibleName() == name) found = row;
        });
        return found;
    };
    if (const auto row = look()) return *row;
    for (int offset = 0; offset < table.contentHeight(); offset += table.viewport()->height()) {
        table.setContentOffset(offset);
        QApplication::processEvents();
        if (const auto row = look()) return *row;
    }
    throw std::runtime_error("no row says " + name.toString().toStdString());
}
