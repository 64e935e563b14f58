#include "platform/ui/table/TableCells.h"

#include "platform/ui/table/TableViewCell.h"

namespace platform {

TableViewCell* TableCells::at(IndexPath path) const {
    const auto found = shown_.find(path);
    return found == shown_.end() ? nullptr : found->second;
}

std::optional<IndexPath> TableCells::pathOf(const QWidget* widget) const {
    if (!widget) return std::nullopt;
    for (const auto& [path, cell] : shown_)
        if (cell == widget || cell->isAncestorOf(widget)) return path;
    return std::nullopt;
}

std::optional<IndexPath> TableCells::rowAt(QPoint position) const {
    for (const auto& [path, cell] : shown_)
        if (cell->geometry().contains(position)) return path;
    return std::nullopt;
}

TableViewCell* TableCells::dequeue(const QString& reuseIdentifier) {
    const auto found = waiting_.find(reuseIdentifier);
    if (found == waiting_.end() || found->isEmpty()) return nullptr;
    return found->takeFirst();
}

void TableCells::put(IndexPath path, TableViewCell* cell) {
    Q_ASSERT_X(!pathOf(cell), "TableView", "the data source returned a cell that shows another row");
    shown_[path] = cell;
}

void TableCells::recycle(TableViewCell* cell) {
    cell->prepareForReuse();
    waiting_[cell->reuseIdentifier()].append(cell);
}

void TableCells::recycleWhere(const std::function<bool(IndexPath)>& leaves) {
    for (auto it = shown_.begin(); it != shown_.end();) {
        if (!leaves(it->first)) {
            ++it;
            continue;
        }
        recycle(it->second);
        it = shown_.erase(it);
    }
}

TableViewCell* TableCells::take(IndexPath path) {
    TableViewCell* cell = at(path);
    shown_.erase(path);
    return cell;
}

void TableCells::shiftRows(IndexPath from, int by) {
    std::map<IndexPath, TableViewCell*> shifted;
    for (const auto& [path, cell] : shown_) {
        const bool moves = path.section == from.section && path.row >= from.row;
        shifted[{path.section, moves ? path.row + by : path.row}] = cell;
    }
    shown_.swap(shifted);
}

void TableCells::hideWaiting() {
    const qsizetype enough = 2 * static_cast<qsizetype>(shown_.size()) + 8;
    for (QList<TableViewCell*>& cells : waiting_) {
        for (TableViewCell* cell : cells) cell->hide();
        while (cells.size() > enough) cells.takeFirst()->deleteLater();
    }
}

}  // namespace platform
