#pragma once

#include <QPoint>
#include <functional>
#include <optional>

#include "platform/ui/table/IndexPath.h"

namespace platform {

class TableView;
class TableViewCell;

// Access to the rows of a table by position (index through all sections), visible or not, for assistive technology,
// which addresses a row and an action directly. Refers to the table, which must outlive it. Positions must be in
// [0, count()). Main thread only.
class TableRows {
public:
    explicit TableRows(TableView& table) : table_(table) {}

    int count() const;
    IndexPath at(int position) const;
    int positionOf(IndexPath path) const;
    // The row drawn at a point of the viewport.
    std::optional<int> positionAt(QPoint point) const;
    // The current row while the table has the focus.
    std::optional<int> focused() const;

    // Calls `ask` with the row's cell. For a row without a cell the data source fills one for the duration of the call;
    // nothing scrolls.
    void withCell(int position, const std::function<void(const TableViewCell&)>& ask) const;

    bool canSelect() const;
    bool canDelete(int position) const;

    // The same as the row's keys; remove() deletes without confirmation. All but remove() scroll to the row.
    void focus(int position) const;
    void select(int position) const;
    void toggle(int position) const;
    void remove(int position) const;

private:
    TableView& table_;
};

}  // namespace platform
