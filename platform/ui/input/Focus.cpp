#include "platform/ui/input/Focus.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QWidget>
#include <algorithm>
#include <vector>

#include "platform/ui/input/FocusScope.h"
#include "platform/ui/input/ReadingOrder.h"

namespace platform::Focus {

namespace {

bool byKeyboard = false;

bool takesFocus(const QWidget* widget) {
    return widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::ClickFocus) &&
           !isTextField(widget) && !qobject_cast<const QLabel*>(widget);
}

QWidget* firstWithin(const QWidget* within) {
    const auto widgets = within->findChildren<QWidget*>();
    const auto found = std::find_if(widgets.begin(), widgets.end(), takesFocus);
    return found == widgets.end() ? nullptr : *found;
}

void appendStops(QWidget* widget, std::vector<QWidget*>& stops) {
    if (!widget->isEnabled()) return;
    const auto* scope = dynamic_cast<FocusScope*>(widget);
    if (scope && scope->partBefore()) appendStops(scope->partBefore(), stops);
    if (widget->focusPolicy() & Qt::TabFocus) stops.push_back(widget);
    if (scope) {
        for (QWidget* part : scope->partsAfter()) appendStops(part, stops);
    } else if (!widget->focusProxy()) {
        for (QWidget* child : inReadingOrder(widget)) appendStops(child, stops);
    }
}

// Index of the innermost stop that is or contains the widget; stops.size() when there is none.
std::size_t indexOf(const QWidget* widget, const std::vector<QWidget*>& stops) {
    for (; widget; widget = widget->parentWidget()) {
        const auto found = std::find(stops.begin(), stops.end(), widget);
        if (found != stops.end()) return static_cast<std::size_t>(found - stops.begin());
    }
    return stops.size();
}

}  // namespace

bool moveOn(QWidget& within, bool forward) {
    std::vector<QWidget*> stops;
    appendStops(&within, stops);
    const std::size_t count = stops.size();
    if (count == 0) return false;
    const std::size_t at = indexOf(within.window()->focusWidget(), stops);
    const std::size_t next = at == count ? (forward ? 0 : count - 1) : (at + (forward ? 1 : count - 1)) % count;
    QWidget* target = stops[next];
    for (QWidget* above = target->parentWidget(); above; above = above->parentWidget()) {
        if (auto* scope = dynamic_cast<FocusScope*>(above)) scope->bringIntoSight(target);
    }
    target->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

bool isByKeyboard() {
    return byKeyboard;
}

bool isSeen(const QWidget* widget) {
    return byKeyboard && widget->hasFocus();
}

Watch::Watch() {
    qApp->installEventFilter(this);
}

Watch::~Watch() {
    byKeyboard = false;
}

bool Watch::eventFilter(QObject*, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress;
    if (!isKey && event->type() != QEvent::MouseButtonPress && event->type() != QEvent::TouchBegin) return false;
    QWidget* focused = QApplication::focusWidget();
    if (focused && byKeyboard != isKey) focused->update();
    byKeyboard = isKey;
    if (auto* scope = dynamic_cast<FocusScope*>(focused); scope && !isKey) scope->hideFocus();
    return false;
}

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
