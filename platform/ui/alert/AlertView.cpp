#include "platform/ui/alert/AlertView.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <algorithm>

#include "platform/ui/alert/AlertBackdrop.h"
#include "platform/ui/alert/AlertButton.h"
#include "platform/ui/alert/AlertContents.h"
#include "platform/ui/alert/AlertText.h"
#include "platform/ui/input/Focus.h"

namespace platform {

AlertViewDelegate::AlertViewDelegate() : alive_(std::make_shared<const bool>(true)) {}
AlertViewDelegate::~AlertViewDelegate() = default;
void AlertViewDelegate::willDismissWithButtonIndex(AlertView&, int) {}
void AlertViewDelegate::didDismissWithButtonIndex(AlertView&, int) {}

struct AlertView::Private {
    Private(AlertView* alert, const QStringList& buttonTitles)
        : q(alert), contents(alert, alert->title_, alert->message_, buttonTitles) {}

    void showWhenAtRest();
    void attachTo(QWidget* window);
    void takeFocus();
    void returnFocus(QWidget* window);
    void closed(int buttonIndex);
    AlertViewDelegate* livingDelegate() const { return delegateAlive.expired() ? nullptr : delegate; }

    AlertView* q;
    AlertContents contents;
    AlertViewDelegate* delegate = nullptr;
    std::weak_ptr<const bool> delegateAlive;
    QPointer<AlertBackdrop> backdrop;
    QPointer<QWidget> owner;    // the alert appears in its window
    QPointer<QWidget> awaited;  // watched until it is shown (the owner) or hidden (a screen transition)
    QPointer<QWidget> focusBefore;
    bool closing = false;
};

// The screen may not be in a window yet, or still be in a transition; the two animations must not overlap.
void AlertView::Private::showWhenAtRest() {
    if (owner->isVisible()) {
        awaited = InputShield::shownIn(owner, InputShield::Until::motionEnds).value(0);
    } else {
        awaited = owner;
    }
    if (awaited) {
        awaited->installEventFilter(q);
    } else {
        attachTo(owner->window());
    }
}

void AlertView::Private::attachTo(QWidget* window) {
    focusBefore = window->focusWidget();
    backdrop = new AlertBackdrop(window, q);
    const auto centre = [this] {
        contents.layOut(backdrop->freeHeight());
        q->move((backdrop->width() - q->width()) / 2, std::max(0, (backdrop->freeHeight() - q->height()) / 2));
    };
    connect(backdrop, &AlertBackdrop::freeHeightChanged, q, centre);
    centre();
    for (QLineEdit* field : contents.fields()) field->installEventFilter(q);
    backdrop->comeIn();
    takeFocus();
    QAccessibleEvent shown(q, QAccessible::Alert);
    QAccessible::updateAccessibility(&shown);
}

void AlertView::Private::takeFocus() {
    contents.focusOrder().front()->setFocus(Qt::OtherFocusReason);
}

// Restores the focus, unless another widget has taken it in the meantime.
void AlertView::Private::returnFocus(QWidget* window) {
    if (window->focusWidget()) return;
    const auto others = AlertView::shownIn(window);
    if (focusBefore && focusBefore->isVisible()) {
        focusBefore->setFocus(Qt::OtherFocusReason);
    } else if (!others.isEmpty()) {
        others.last()->d_->takeFocus();
    } else {
        Focus::giveTo(window);
    }
}

void AlertView::Private::closed(int buttonIndex) {
    if (backdrop) {
        QWidget* window = backdrop->window();
        Focus::endEditing(backdrop);
        backdrop->hide();
        backdrop->deleteLater();
        returnFocus(window);
    } else {
        q->deleteLater();
    }
    if (AlertViewDelegate* told = livingDelegate()) told->didDismissWithButtonIndex(*q, buttonIndex);
}

AlertView::AlertView(const QString& title, const QString& message, AlertViewDelegate* delegate,
                     const QString& cancelButtonTitle, const QStringList& otherButtonTitles)
    : title_(title), message_(message) {
    d_ = std::make_unique<Private>(this, QStringList(cancelButtonTitle) + otherButtonTitles);
    hide();
    d_->delegate = delegate;
    if (delegate) d_->delegateAlive = delegate->alive_;
    for (int index = 0; index < numberOfButtons(); ++index) {
        connect(button(index), &QPushButton::clicked, this, [this, index] { dismissWithClickedButtonIndex(index); });
    }
    setAccessibleName(title);
    setAccessibleDescription(message.trimmed());
}

AlertView::~AlertView() = default;

void AlertView::addSubview(QWidget* view, const QRect& frame) {
    d_->contents.addSubview(view, frame);
}

void AlertView::setDestructive(int buttonIndex) {
    d_->contents.setDestructive(buttonIndex);
}

bool AlertView::isDestructive(int buttonIndex) const {
    const auto& buttons = d_->contents.buttons();
    return buttons.at(static_cast<std::size_t>(buttonIndex))->weight() == AlertButton::Weight::destructive;
}

void AlertView::show(QWidget* inWindowOf) {
    // Until it is shown, the alert is a hidden child of the caller and destroyed with it.
    setParent(inWindowOf);
    hide();
    d_->owner = inWindowOf;
    d_->showWhenAtRest();
}

void AlertView::dismissWithClickedButtonIndex(int buttonIndex) {
    if (d_->closing) return;
    d_->closing = true;
    if (d_->awaited) d_->awaited->removeEventFilter(this);
    if (AlertViewDelegate* told = d_->livingDelegate()) told->willDismissWithButtonIndex(*this, buttonIndex);
    if (d_->backdrop) {
        d_->backdrop->goOut([this, buttonIndex] { d_->closed(buttonIndex); });
    } else {
        d_->closed(buttonIndex);
    }
}

int AlertView::numberOfButtons() const {
    return static_cast<int>(d_->contents.buttons().size());
}

QPushButton* AlertView::button(int index) const {
    return d_->contents.buttons().at(static_cast<std::size_t>(index));
}

QList<AlertView*> AlertView::shownIn(const QWidget* widget) {
    QList<AlertView*> alerts;
    for (const auto* backdrop : widget->window()->findChildren<AlertBackdrop*>(Qt::FindDirectChildrenOnly)) {
        auto* alert = qobject_cast<AlertView*>(backdrop->panel());
        if (!backdrop->isHidden()) alerts.append(alert);
    }
    return alerts;
}

bool AlertView::isCovered(const QWidget* widget) {
    const QList<AlertView*> shown = shownIn(widget);
    return !shown.isEmpty() && !shown.last()->isAncestorOf(widget);
}

bool AlertView::eventFilter(QObject* watched, QEvent* event) {
    const bool isShownOrHidden = event->type() == QEvent::Show || event->type() == QEvent::Hide;
    if (watched == d_->awaited && isShownOrHidden) {
        d_->awaited->removeEventFilter(this);
        d_->showWhenAtRest();
    } else if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        const bool isReturn = key == Qt::Key_Return || key == Qt::Key_Enter;
        if (isReturn || key == Qt::Key_Escape) {
            static_cast<QWidget*>(watched)->clearFocus();
            dismissWithClickedButtonIndex(isReturn ? numberOfButtons() - 1 : 0);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

// Accepts every key: none propagates to the widgets below.
void AlertView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Escape:
        case Qt::Key_Back:
            dismissWithClickedButtonIndex(0);
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (auto* focused = qobject_cast<QPushButton*>(Focus::heldWithin(this))) focused->click();
            break;
        case Qt::Key_Up:
        case Qt::Key_Left:
            focusNextPrevChild(false);
            break;
        case Qt::Key_Down:
        case Qt::Key_Right:
            focusNextPrevChild(true);
            break;
        case Qt::Key_PageUp:
            d_->contents.text().scroll(false);
            break;
        case Qt::Key_PageDown:
            d_->contents.text().scroll(true);
            break;
        default:
            break;
    }
    event->accept();
}

bool AlertView::focusNextPrevChild(bool next) {
    const auto order = d_->contents.focusOrder();
    const auto count = order.size();
    const auto at = std::find(order.begin(), order.end(), Focus::heldWithin(this));
    const auto index = static_cast<std::size_t>(at - order.begin()) % count;
    order[(index + (next ? 1 : count - 1)) % count]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void AlertView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    d_->contents.paint(painter);
}

}  // namespace platform
