#pragma once

#include <QHash>
#include <deque>

#include "platform/ui/accessibility/AccessibleView.h"
#include "platform/ui/table/TableAnnouncements.h"

namespace platform {

class TableView;

// The rows of a table as a list. Interfaces of rows are created on demand, and the 4096 most recently created are kept:
// memory does not depend on the number of rows.
class AccessibleRows : public QAccessibleInterface, public QAccessibleTableInterface {
public:
    explicit AccessibleRows(TableView* table) : table_(table) {}
    ~AccessibleRows() override;

    bool isValid() const override { return true; }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return parent()->window(); }
    QAccessibleInterface* parent() const override;
    int childCount() const override { return rowCount(); }
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    QString text(QAccessible::Text which) const override { return parent()->text(which); }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override { return parent()->rect(); }
    QAccessible::Role role() const override { return QAccessible::List; }
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    QAccessibleInterface* cellAt(int row, int) const override { return child(row); }
    int selectedCellCount() const override { return selectedRowCount(); }
    QList<QAccessibleInterface*> selectedCells() const override;
    QString columnDescription(int) const override { return {}; }
    QString rowDescription(int) const override { return {}; }
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override { return static_cast<int>(selectedRows().size()); }
    int columnCount() const override { return 1; }
    int rowCount() const override;
    QList<int> selectedColumns() const override { return {}; }
    QList<int> selectedRows() const override;
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int row) const override { return selectedRows().contains(row); }
    bool selectRow(int) override { return false; }
    bool selectColumn(int) override { return false; }
    bool unselectRow(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent*) override {}

private:
    TableView* table_;
    mutable QHash<int, QAccessible::Id> rows_;  // by position
    mutable std::deque<int> age_;               // the keys of rows_, oldest first
};

// A table: the parent of its header view and its rows.
class AccessibleTable : public QAccessibleWidget, public TableReader {
public:
    explicit AccessibleTable(TableView* table);
    ~AccessibleTable() override;

    AccessibleRows* rows() const override { return rows_; }

    QAccessible::State state() const override;
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

private:
    QWidget* header() const;

    AccessibleRows* rows_;  // owned by Qt's interface cache
    QAccessible::Id rowsId_;
};

}  // namespace platform
