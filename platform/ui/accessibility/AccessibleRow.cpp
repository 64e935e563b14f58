#include "platform/ui/accessibility/AccessibleRow.h"

#include <QWindow>

#include "platform/ui/accessibility/AccessibleTable.h"
#include "platform/ui/accessibility/Reach.h"
#include "platform/ui/controls/Switch.h"
#include "platform/ui/table/TableRows.h"
#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"

namespace platform {

namespace {

QString deleteAction() {
    return QStringLiteral("delete");
}

AccessibleRows* rowsOf(TableView* table) {
    return static_cast<AccessibleTable*>(QAccessible::queryAccessibleInterface(table))->rows();
}

}  // namespace

// --- The row

IndexPath AccessibleRow::path() const {
    return TableRows(*table_).at(position_);
}

TableViewCell* AccessibleRow::shownCell() const {
    return isValid() ? table_->cellForRow(path()) : nullptr;
}

bool AccessibleRow::isValid() const {
    return table_ && position_ < TableRows(*table_).count();
}

QWindow* AccessibleRow::window() const {
    return table_ ? table_->window()->windowHandle() : nullptr;
}

QAccessibleInterface* AccessibleRow::table() const {
    return table_ ? rowsOf(table_) : nullptr;
}

int AccessibleRow::childCount() const {
    const TableViewCell* cell = shownCell();
    return cell && holdsControl(cell) ? 1 : 0;
}

QAccessibleInterface* AccessibleRow::child(int index) const {
    return index == 0 && childCount() > 0 ? QAccessible::queryAccessibleInterface(shownCell()) : nullptr;
}

int AccessibleRow::indexOfChild(const QAccessibleInterface* child) const {
    return child && child == this->child(0) ? 0 : -1;
}

QAccessibleInterface* AccessibleRow::childAt(int x, int y) const {
    return rect().contains(x, y) ? child(0) : nullptr;
}

QString AccessibleRow::text(QAccessible::Text which) const {
    QString read;
    if (isValid())
        TableRows(*table_).withCell(position_, [&](const TableViewCell& cell) { read = textOf(cell, which); });
    return read;
}

QString AccessibleRow::textOf(const TableViewCell& cell, QAccessible::Text which) const {
    switch (which) {
        case QAccessible::Name:
            return cell.accessibleName();
        case QAccessible::Description:
            return cell.isOpeningAside() ? TableView::tr("Delete: press again to confirm")
                                         : cell.accessibleDescription();
        default:
            return {};
    }
}

QRect AccessibleRow::rect() const {
    if (!isValid()) return {};
    const QRect row = table_->rectForRow(path());
    return {table_->viewport()->mapToGlobal(row.topLeft()), row.size()};
}

QAccessible::State AccessibleRow::state() const {
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const bool isSeen = table_->rectForRow(path()).intersects(table_->viewport()->rect());
    state.focusable = true;
    state.focused = TableRows(*table_).focused() == position_;
    state.selectable = true;
    state.selected = isSelected();
    state.offscreen = !isSeen;
    state.invisible = !table_->isVisible();
    TableRows(*table_).withCell(position_, [&state](const TableViewCell& cell) {
        if (const Switch* toggle = cell.accessorySwitch()) {
            state.checkable = true;
            state.checked = toggle->isOn();
            state.disabled = !toggle->isEnabled();
        }
    });
    return state;
}

bool AccessibleRow::isSelected() const {
    return isValid() && table_->indexPathForSelectedRow() == path();
}

void* AccessibleRow::interface_cast(QAccessible::InterfaceType type) {
    switch (type) {
        case QAccessible::TableCellInterface:
            return static_cast<QAccessibleTableCellInterface*>(this);
        case QAccessible::ActionInterface:
            return static_cast<QAccessibleActionInterface*>(this);
        default:
            return nullptr;
    }
}

QStringList AccessibleRow::actionNames() const {
    if (!isValid()) return {};
    QStringList names;
    const QAccessible::State now = state();
    if (now.checkable && !now.disabled) names.append(toggleAction());
    if (TableRows(*table_).canSelect()) names.append(pressAction());
    if (TableRows(*table_).canDelete(position_)) names.append(deleteAction());
    names.append(setFocusAction());
    return names;
}

void AccessibleRow::doAction(const QString& name) {
    if (!actionNames().contains(name) || !isWithinReach(table_)) return;
    const TableRows rows(*table_);
    if (name == deleteAction()) rows.remove(position_);
    if (name == setFocusAction()) rows.focus(position_);
    if (name == toggleAction()) rows.toggle(position_);
    if (name == pressAction()) rows.select(position_);
}

QStringList AccessibleRow::keyBindingsForAction(const QString& name) const {
    if (name == toggleAction()) return {QStringLiteral("Space")};
    if (name == pressAction()) return {QStringLiteral("Return")};
    if (name == deleteAction()) return {QStringLiteral("Delete")};
    return {};
}

// --- The cell

AccessibleCell::AccessibleCell(TableViewCell* cell) : AccessibleView(cell) {}

QAccessibleInterface* AccessibleCell::parent() const {
    for (QWidget* above = widget()->parentWidget(); above; above = above->parentWidget()) {
        auto* table = qobject_cast<TableView*>(above);
        if (!table) continue;
        const auto path = table->indexPathForCell(widget());
        return path ? rowsOf(table)->child(TableRows(*table).positionOf(*path)) : nullptr;
    }
    return nullptr;
}

}  // namespace platform
