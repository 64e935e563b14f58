#pragma once

#include <QPoint>
#include <functional>
#include <optional>

#include "platform/ui/table/IndexPath.h"

namespace platform {

class TableView;
class TableViewCell;

// The rows of a table by position, counted through all sections, in sight or not: for assistive technology, which
// names a row and what is to be done to it, without finger and key. A value that refers to its table. A position that
// is asked about must be one of a row. Main thread only.
class TableRows {
public:
    explicit TableRows(TableView& table) : table_(table) {}

    int count() const;
    IndexPath at(int position) const;
    int positionOf(IndexPath path) const;
    // The row at a point of the viewport.
    std::optional<int> positionAt(QPoint point) const;
    // The row that the keyboard is on.
    std::optional<int> focused() const;

    // Calls `ask` with the row's cell. A row out of sight borrows one from the data source for that long; nothing
    // scrolls.
    void withCell(int position, const std::function<void(const TableViewCell&)>& ask) const;

    bool canSelect() const;
    bool canDelete(int position) const;

    // What the row's keys do, without asking for confirmation. All but remove() scroll to the row.
    void focus(int position) const;
    void select(int position) const;
    void toggle(int position) const;
    void remove(int position) const;

private:
    TableView& table_;
};

}  // namespace platform
