#include "platform/ui/table/TableAnnouncements.h"

#include "platform/ui/table/TableView.h"

namespace platform::TableAnnouncements {

namespace {

QAccessibleInterface* rowsOf(TableView& table) {
    if (!QAccessible::isActive()) return nullptr;
    const auto* reader = dynamic_cast<TableReader*>(QAccessible::queryAccessibleInterface(&table));
    return reader ? reader->rows() : nullptr;
}

QAccessibleInterface* rowOf(TableView& table, int position) {
    const QAccessibleInterface* rows = rowsOf(table);
    return rows ? rows->child(position) : nullptr;
}

void tellOfRow(TableView& table, int position, QAccessible::Event what) {
    QAccessibleInterface* row = rowOf(table, position);
    if (!row) return;
    QAccessibleEvent event(row, what);
    QAccessible::updateAccessibility(&event);
}

}  // namespace

void rowsChanged(TableView& table) {
    if (QAccessibleInterface* rows = rowsOf(table)) {
        QAccessibleTableModelChangeEvent event(rows, QAccessibleTableModelChangeEvent::ModelReset);
        QAccessible::updateAccessibility(&event);
    }
}

void rowFocused(TableView& table, int position) {
    tellOfRow(table, position, QAccessible::Focus);
}

void rowDescribed(TableView& table, int position) {
    tellOfRow(table, position, QAccessible::DescriptionChanged);
}

void rowToggled(TableView& table, int position) {
    QAccessibleInterface* row = rowOf(table, position);
    if (!row) return;
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(row, changed);
    QAccessible::updateAccessibility(&event);
}

}  // namespace platform::TableAnnouncements
