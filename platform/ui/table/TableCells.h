#pragma once

#include <QHash>
#include <QList>
#include <QPoint>
#include <QString>
#include <functional>
#include <map>
#include <optional>

#include "platform/ui/table/IndexPath.h"

class QWidget;

namespace platform {

class TableViewCell;

// The cells of a table: those that show a row, by row, and those that wait to be used again. All are children of the
// table's viewport; waiting ones stay where they are until hideWaiting(), so that a cell that leaves at one edge and
// comes back at the other is not hidden in between.
class TableCells {
public:
    const std::map<IndexPath, TableViewCell*>& shown() const { return shown_; }
    TableViewCell* at(IndexPath path) const;
    // The row of the cell that is, or holds, this widget.
    std::optional<IndexPath> pathOf(const QWidget* widget) const;
    // The row at a point of the viewport, as it is seen now.
    std::optional<IndexPath> rowAt(QPoint position) const;

    // A waiting cell, prepared for reuse and no longer waiting; nullptr when there is none.
    TableViewCell* dequeue(const QString& reuseIdentifier);
    void put(IndexPath path, TableViewCell* cell);

    void recycle(TableViewCell* cell);
    void recycleWhere(const std::function<bool(IndexPath)>& leaves);
    // The cell shows its row no longer but does not wait yet: it is still on its way out.
    TableViewCell* take(IndexPath path);

    // The cells at `from` and below in its section now show the row that is `by` further down.
    void shiftRows(IndexPath from, int by);

    // Hides the cells that wait, and destroys those of them that are more than a screen could need.
    void hideWaiting();

private:
    std::map<IndexPath, TableViewCell*> shown_;
    QHash<QString, QList<TableViewCell*>> waiting_;
};

}  // namespace platform
