#include "platform/ui/accessibility/AccessibleTable.h"

#include "platform/ui/accessibility/AccessibleRow.h"
#include "platform/ui/table/TableRows.h"
#include "platform/ui/table/TableView.h"

namespace platform {

namespace {

constexpr std::size_t mostRowsKept = 4096;

}  // namespace

// --- The rows

AccessibleRows::~AccessibleRows() {
    for (const QAccessible::Id id : std::as_const(rows_)) QAccessible::deleteAccessibleInterface(id);
}

QAccessibleInterface* AccessibleRows::parent() const {
    return QAccessible::queryAccessibleInterface(table_);
}

int AccessibleRows::rowCount() const {
    return TableRows(*table_).count();
}

QAccessibleInterface* AccessibleRows::child(int index) const {
    if (index < 0 || index >= rowCount()) return nullptr;
    if (const auto known = rows_.constFind(index); known != rows_.cend()) {
        return QAccessible::accessibleInterface(known.value());
    }
    if (age_.size() == mostRowsKept) {
        QAccessible::deleteAccessibleInterface(rows_.take(age_.front()));
        age_.pop_front();
    }
    auto* row = new AccessibleRow(table_, index);
    rows_.insert(index, QAccessible::registerAccessibleInterface(row));
    age_.push_back(index);
    return row;
}

int AccessibleRows::indexOfChild(const QAccessibleInterface* child) const {
    const auto* row = dynamic_cast<const AccessibleRow*>(child);
    return row && row->isIn(*table_) ? row->rowIndex() : -1;
}

QAccessibleInterface* AccessibleRows::childAt(int x, int y) const {
    const auto position = TableRows(*table_).positionAt(table_->viewport()->mapFromGlobal(QPoint(x, y)));
    return position ? child(*position) : nullptr;
}

QAccessibleInterface* AccessibleRows::focusChild() const {
    const auto focused = TableRows(*table_).focused();
    return focused ? child(*focused) : nullptr;
}

QAccessible::State AccessibleRows::state() const {
    QAccessible::State state = parent()->state();
    state.focusable = false;
    state.focused = false;
    return state;
}

QList<int> AccessibleRows::selectedRows() const {
    const auto selected = table_->indexPathForSelectedRow();
    return selected ? QList{TableRows(*table_).positionOf(*selected)} : QList<int>();
}

QList<QAccessibleInterface*> AccessibleRows::selectedCells() const {
    QList<QAccessibleInterface*> cells;
    for (const int row : selectedRows()) cells.append(child(row));
    return cells;
}

void* AccessibleRows::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::TableInterface ? static_cast<QAccessibleTableInterface*>(this) : nullptr;
}

// --- The table

AccessibleTable::AccessibleTable(TableView* table)
    : QAccessibleWidget(table, QAccessible::Pane),
      rows_(new AccessibleRows(table)),
      rowsId_(QAccessible::registerAccessibleInterface(rows_)) {}

AccessibleTable::~AccessibleTable() {
    QAccessible::deleteAccessibleInterface(rowsId_);
}

QAccessible::State AccessibleTable::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    if (rows_->focusChild()) state.focused = false;
    return state;
}

QWidget* AccessibleTable::header() const {
    return static_cast<TableView*>(widget())->partBefore();
}

int AccessibleTable::childCount() const {
    const bool areRowsReachable = static_cast<TableView*>(widget())->areRowsReachable();
    return (header() ? 1 : 0) + (areRowsReachable ? 1 : 0);
}

QAccessibleInterface* AccessibleTable::child(int index) const {
    if (index < 0 || index >= childCount()) return nullptr;
    return index == 0 && header() ? QAccessible::queryAccessibleInterface(header()) : rows_;
}

int AccessibleTable::indexOfChild(const QAccessibleInterface* child) const {
    for (int index = 0; index < childCount(); ++index) {
        if (this->child(index) == child) return index;
    }
    return -1;
}

QAccessibleInterface* AccessibleTable::childAt(int x, int y) const {
    for (int index = 0; index < childCount(); ++index) {
        QAccessibleInterface* part = child(index);
        const bool isHeader = index == 0 && header();
        if (isHeader ? part->rect().contains(x, y) : rows_->childAt(x, y) != nullptr) return part;
    }
    return nullptr;
}

QAccessibleInterface* AccessibleTable::focusChild() const {
    QAccessibleInterface* row = rows_->focusChild();
    return row ? row : QAccessibleWidget::focusChild();
}

}  // namespace platform
