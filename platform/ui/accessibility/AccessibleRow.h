#pragma once

#include <QAccessibleWidget>
#include <QPointer>
#include <functional>

#include "platform/ui/accessibility/AccessibleView.h"
#include "platform/ui/table/IndexPath.h"

namespace platform {

class Switch;
class TableView;
class TableViewCell;

// A row of a table by position, visible or not. Name and description are those of its cell; for a row without a cell,
// the data source fills one for the query. The actions (press, toggle, delete, focus) apply to the row as a whole.
class AccessibleRow : public QAccessibleInterface,
                      public QAccessibleTableCellInterface,
                      public QAccessibleActionInterface {
public:
    AccessibleRow(TableView* table, int position) : table_(table), position_(position) {}

    bool isIn(const TableView& table) const { return table_ == &table; }

    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QWindow* window() const override;
    QAccessibleInterface* parent() const override { return table(); }
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QString text(QAccessible::Text which) const override;
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    bool isSelected() const override;
    QList<QAccessibleInterface*> columnHeaderCells() const override { return {}; }
    QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
    int columnIndex() const override { return 0; }
    int rowIndex() const override { return position_; }
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface* table() const override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString& name) const override;

private:
    IndexPath path() const;
    TableViewCell* shownCell() const;
    QString textOf(const TableViewCell& cell, QAccessible::Text which) const;

    QPointer<TableView> table_;
    int position_;
};

// The cell of a visible row: the container of the row's controls.
class AccessibleCell : public AccessibleView {
public:
    explicit AccessibleCell(TableViewCell* cell);

    QAccessible::Role role() const override { return QAccessible::Client; }
    QString text(QAccessible::Text) const override { return {}; }
    QAccessibleInterface* parent() const override;
};

}  // namespace platform
