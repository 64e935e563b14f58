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

// The cells of a table: a map from row to shown cell, and a pool of cells for reuse. All are children of the table's
// viewport. Pooled cells are hidden only in hideWaiting(), so that a cell that leaves at one edge and is reused at the
// other is not hidden and shown again.
class TableCells {
public:
    const std::map<IndexPath, TableViewCell*>& shown() const { return shown_; }
    TableViewCell* at(IndexPath path) const;
    // The row whose cell is or contains the widget.
    std::optional<IndexPath> pathOf(const QWidget* widget) const;
    // The row whose cell is drawn at a point of the viewport, animations included.
    std::optional<IndexPath> rowAt(QPoint position) const;

    // Takes a cell from the pool, prepared for reuse; nullptr when there is none.
    TableViewCell* dequeue(const QString& reuseIdentifier);
    void put(IndexPath path, TableViewCell* cell);

    void recycle(TableViewCell* cell);
    void recycleWhere(const std::function<bool(IndexPath)>& leaves);
    // Removes the cell from its row without pooling it: its leaving is still animated.
    TableViewCell* take(IndexPath path);

    // Adds `by` to the row index of every cell from `from` on in its section.
    void shiftRows(IndexPath from, int by);

    // Hides pooled cells and destroys those beyond twice the number of shown cells plus 8.
    void hideWaiting();

private:
    std::map<IndexPath, TableViewCell*> shown_;
    QHash<QString, QList<TableViewCell*>> waiting_;
};

}  // namespace platform
