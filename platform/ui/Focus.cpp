#include "platform/ui/Focus.h"

#include <QWidget>
#include <algorithm>

namespace platform::Focus {

namespace {

bool takesFocus(const QWidget* widget) {
    return widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::ClickFocus) &&
           !isTextField(widget);
}

QWidget* firstWithin(const QWidget* within) {
    const auto widgets = within->findChildren<QWidget*>();
    const auto found = std::find_if(widgets.begin(), widgets.end(), takesFocus);
    return found == widgets.end() ? nullptr : *found;
}

}  // namespace

QWidget* heldWithin(const QWidget* within) {
    QWidget* widget = within->window()->focusWidget();
    return widget && (widget == within || within->isAncestorOf(widget)) ? widget : nullptr;
}

bool isTextField(const QWidget* widget) {
    return widget->testAttribute(Qt::WA_InputMethodEnabled);
}

void endEditing(const QWidget* within) {
    if (QWidget* widget = heldWithin(within)) widget->clearFocus();
}

void giveTo(QWidget* within) {
    QWidget* first = firstWithin(within);
    (first ? first : within)->setFocus(Qt::OtherFocusReason);
}

}  // namespace platform::Focus
