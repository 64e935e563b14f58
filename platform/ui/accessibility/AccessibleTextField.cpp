#include "platform/ui/accessibility/AccessibleTextField.h"

#include "platform/ui/alert/AlertView.h"
#include "platform/ui/controls/TextField.h"

namespace platform {

AccessibleTextField::AccessibleTextField(TextField* field) : QAccessibleWidget(field, QAccessible::EditableText) {}

TextField* AccessibleTextField::field() const {
    return static_cast<TextField*>(widget());
}

// The same limits as for a tap: visible and not covered by an alert.
bool AccessibleTextField::canBeEdited() const {
    return field()->isEnabled() && field()->isVisible() && !AlertView::isCovered(field());
}

QString AccessibleTextField::text(QAccessible::Text which) const {
    switch (which) {
        case QAccessible::Value:
            return field()->text();
        case QAccessible::Description:
            return field()->placeholderText();
        default:
            return QAccessibleWidget::text(which);
    }
}

void AccessibleTextField::setText(QAccessible::Text which, const QString& text) {
    if (which == QAccessible::Value) replaceText(0, characterCount(), text);
}

QAccessible::State AccessibleTextField::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.editable = field()->isEnabled();
    state.selectableText = true;
    return state;
}

void* AccessibleTextField::interface_cast(QAccessible::InterfaceType type) {
    switch (type) {
        case QAccessible::TextInterface:
            return static_cast<QAccessibleTextInterface*>(this);
        case QAccessible::EditableTextInterface:
            return field()->isEnabled() ? static_cast<QAccessibleEditableTextInterface*>(this) : nullptr;
        default:
            return QAccessibleWidget::interface_cast(type);
    }
}

QStringList AccessibleTextField::actionNames() const {
    return field()->isEnabled() ? QStringList{setFocusAction()} : QStringList();
}

void AccessibleTextField::doAction(const QString& name) {
    if (name == setFocusAction() && canBeEdited()) field()->becomeFirstResponder();
}

void AccessibleTextField::selection(int index, int* begin, int* end) const {
    const bool isThere = index == 0 && field()->hasSelectedText();
    *begin = isThere ? field()->selectionStart() : 0;
    *end = isThere ? field()->selectionEnd() : 0;
}

int AccessibleTextField::selectionCount() const {
    return field()->hasSelectedText() ? 1 : 0;
}

void AccessibleTextField::removeSelection(int index) {
    if (index == 0) field()->deselect();
}

void AccessibleTextField::setSelection(int index, int begin, int end) {
    if (index == 0) field()->setSelection(begin, end - begin);
}

int AccessibleTextField::cursorPosition() const {
    return field()->cursorPosition();
}

void AccessibleTextField::setCursorPosition(int position) {
    field()->setCursorPosition(position);
}

QString AccessibleTextField::text(int begin, int end) const {
    return field()->text().mid(begin, end - begin);
}

int AccessibleTextField::characterCount() const {
    return static_cast<int>(field()->text().size());
}

int AccessibleTextField::offsetAtPoint(const QPoint& point) const {
    const QPoint inside = field()->mapFromGlobal(point);
    return field()->rect().contains(inside) ? field()->cursorPositionAt(inside) : -1;
}

QString AccessibleTextField::attributes(int, int* begin, int* end) const {
    *begin = 0;
    *end = characterCount();
    return {};
}

void AccessibleTextField::replaceText(int begin, int end, const QString& text) {
    if (!canBeEdited()) return;
    const bool isEdited = field()->isFirstResponder();
    if (!isEdited) field()->becomeFirstResponder();
    field()->setText(field()->text().replace(begin, end - begin, text));
    if (!isEdited) field()->resignFirstResponder();
}

}  // namespace platform
