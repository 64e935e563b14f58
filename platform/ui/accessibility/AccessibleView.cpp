#include "platform/ui/accessibility/AccessibleView.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>

#include "platform/ui/alert/AlertBackdrop.h"
#include "platform/ui/input/ReadingOrder.h"
#include "platform/ui/table/TableViewCell.h"

namespace platform {

namespace {

// Shadows, bands, icons: no name, no focus, and no child that has either.
bool isDecoration(const QWidget* widget) {
    if (!widget->accessibleName().isEmpty() || widget->focusPolicy() != Qt::NoFocus) return false;
    if (const auto* label = qobject_cast<const QLabel*>(widget)) return label->text().trimmed().isEmpty();
    const QList<QWidget*> inside = inReadingOrder(widget);
    return std::all_of(inside.begin(), inside.end(), isDecoration);
}

bool isInRow(const QWidget* widget) {
    for (; widget; widget = widget->parentWidget()) {
        if (qobject_cast<const TableViewCell*>(widget)) return true;
    }
    return false;
}

}  // namespace

bool holdsControl(const QWidget* partOfRow) {
    if (qobject_cast<const QLabel*>(partOfRow)) return false;
    if (qobject_cast<const QLineEdit*>(partOfRow)) return partOfRow->isEnabled();
    if (partOfRow->focusPolicy() != Qt::NoFocus || qobject_cast<const QAbstractButton*>(partOfRow)) return true;
    const QList<QWidget*> inside = inReadingOrder(partOfRow);
    return std::any_of(inside.begin(), inside.end(), holdsControl);
}

QAccessible::Role AccessibleView::role() const {
    if (widget()->isWindow()) return QAccessible::Window;
    return widget()->accessibleName().isEmpty() ? QAccessible::Client : QAccessible::Pane;
}

QList<QWidget*> AccessibleView::children() const {
    QList<QWidget*> found = inReadingOrder(widget());
    QWidget* alert = nullptr;
    for (QWidget* child : found) {
        if (auto* backdrop = qobject_cast<AlertBackdrop*>(child)) alert = backdrop;
    }
    if (alert) return {alert};
    const bool isPartOfRow = isInRow(widget());
    found.removeIf(
        [isPartOfRow](const QWidget* each) { return isPartOfRow ? !holdsControl(each) : isDecoration(each); });
    return found;
}

int AccessibleView::childCount() const {
    return static_cast<int>(children().size());
}

QAccessibleInterface* AccessibleView::child(int index) const {
    return QAccessible::queryAccessibleInterface(children().value(index));
}

int AccessibleView::indexOfChild(const QAccessibleInterface* child) const {
    return static_cast<int>(children().indexOf(child ? qobject_cast<QWidget*>(child->object()) : nullptr));
}

}  // namespace platform
