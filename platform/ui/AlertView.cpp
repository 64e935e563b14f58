#include "platform/ui/AlertView.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>
#include <vector>

#include "platform/ui/Accessibility.h"
#include "platform/ui/AlertBackdrop.h"
#include "platform/ui/AlertButton.h"
#include "platform/ui/AlertLabel.h"
#include "platform/ui/Focus.h"

namespace platform {

namespace {

constexpr int panelWidth = 284;
constexpr int cornerRadius = 10;
constexpr int sideMargin = 12;
constexpr int topMargin = 15;
constexpr int bottomMargin = 16;
constexpr int titleGap = 6;
constexpr int buttonHeight = 44;
constexpr int windowMargin = 12;  // kept free above and below the panel
constexpr int titleSize = 17;
constexpr int messageSize = 15;
constexpr QColor pressedGrey(161, 176, 176, 70);

QFont alertFont(int pixels, bool bold) {
    QFont font(QStringLiteral("Helvetica"));
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
}

AlertButton::Weight weightOf(int index, int count) {
    if (index == count - 1) return AlertButton::Weight::accent;
    return index == 0 ? AlertButton::Weight::quiet : AlertButton::Weight::plain;
}

}  // namespace

AlertViewDelegate::AlertViewDelegate() : alive_(std::make_shared<const bool>(true)) {}
AlertViewDelegate::~AlertViewDelegate() = default;
void AlertViewDelegate::willDismissWithButtonIndex(AlertView&, int) {}
void AlertViewDelegate::didDismissWithButtonIndex(AlertView&, int) {}

struct AlertView::Private {
    explicit Private(AlertView* alert) : q(alert) {}

    void makeText();
    void makeButtons(const QStringList& titles);

    void layOut(int windowHeight);
    int layOutText(int room);
    int layOutButtons(int top);
    int buttonRows() const { return buttons.size() == 2 ? 1 : static_cast<int>(buttons.size()); }

    void attachTo(QWidget* window);
    void takeFocus();
    void returnFocus(QWidget* window);
    std::vector<QWidget*> focusOrder() const;

    void closed(int buttonIndex);
    AlertViewDelegate* livingDelegate() const { return delegateAlive.expired() ? nullptr : delegate; }

    AlertView* q;
    AlertViewDelegate* delegate = nullptr;
    std::weak_ptr<const bool> delegateAlive;
    QScrollArea* textArea = nullptr;
    AlertLabel* titleLabel = nullptr;
    AlertLabel* messageLabel = nullptr;
    std::vector<AlertButton*> buttons;
    std::vector<QWidget*> subviews;
    std::vector<QLineEdit*> fields;
    QPointer<AlertBackdrop> backdrop;
    QPointer<QWidget> awaited;  // the widget whose window is not on the screen yet
    QPointer<QWidget> focusBefore;
    bool closing = false;
};

void AlertView::Private::makeText() {
    textArea = new QScrollArea(q);
    textArea->setFrameShape(QFrame::NoFrame);
    textArea->setFocusPolicy(Qt::NoFocus);
    textArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* text = new QWidget;
    titleLabel = new AlertLabel(q->title_, alertFont(titleSize, true), text);
    messageLabel = new AlertLabel(q->message_, alertFont(messageSize, false), text);
    textArea->setWidget(text);
    textArea->viewport()->setAutoFillBackground(false);
    text->setAutoFillBackground(false);
}

void AlertView::Private::makeButtons(const QStringList& titles) {
    const int count = static_cast<int>(titles.size());
    for (int index = 0; index < count; ++index) {
        auto* made = new AlertButton(titles[index], weightOf(index, count), q);
        made->setStandsBesideAnother(count == 2 && index == 1);
        connect(made, &QPushButton::clicked, q, [this, index] { q->dismissWithClickedButtonIndex(index); });
        buttons.push_back(made);
    }
}

void AlertView::Private::layOut(int windowHeight) {
    const int buttonsHeight = buttonRows() * buttonHeight;
    int bottom = layOutText(windowHeight - 2 * windowMargin - buttonsHeight - bottomMargin);
    for (const QWidget* view : subviews) bottom = std::max(bottom, view->geometry().bottom() + 1);
    q->resize(panelWidth, layOutButtons(bottom + bottomMargin));
}

// Returns where the text ends. Text that is higher than the room scrolls.
int AlertView::Private::layOutText(int room) {
    const int width = panelWidth - 2 * sideMargin;
    const int titleHeight = titleLabel->heightForWidth(width);
    const int messageHeight = messageLabel->heightForWidth(width);
    const int messageTop = topMargin + titleHeight + (titleHeight && messageHeight ? titleGap : 0);
    titleLabel->setGeometry(sideMargin, topMargin, width, titleHeight);
    messageLabel->setGeometry(sideMargin, messageTop, width, messageHeight);
    const int bottom = messageTop + messageHeight;
    textArea->widget()->resize(panelWidth, bottom);
    textArea->setGeometry(0, 0, panelWidth, std::min(bottom, room));
    return textArea->height();
}

// Returns where the buttons end.
int AlertView::Private::layOutButtons(int top) {
    const bool inARow = buttons.size() == 2;
    const int width = inARow ? panelWidth / 2 : panelWidth;
    int x = 0;
    int y = top;
    for (AlertButton* placed : buttons) {
        placed->setGeometry(x, y, width, buttonHeight);
        if (inARow) {
            x += width;
        } else {
            y += buttonHeight;
        }
    }
    return top + buttonRows() * buttonHeight;
}

void AlertView::Private::attachTo(QWidget* window) {
    focusBefore = window->focusWidget();
    backdrop = new AlertBackdrop(window, q);
    const auto centre = [this] {
        layOut(backdrop->height());
        q->move((backdrop->width() - q->width()) / 2, (backdrop->height() - q->height()) / 2);
    };
    connect(backdrop, &AlertBackdrop::resized, q, centre);
    centre();
    for (QLineEdit* field : fields) field->installEventFilter(q);
    backdrop->comeIn();
    takeFocus();
    QAccessibleEvent shown(q, QAccessible::Alert);
    QAccessible::updateAccessibility(&shown);
}

void AlertView::Private::takeFocus() {
    focusOrder().front()->setFocus(Qt::OtherFocusReason);
}

// Back to what had the keyboard, unless something else has taken it meanwhile.
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

std::vector<QWidget*> AlertView::Private::focusOrder() const {
    std::vector<QWidget*> order(fields.begin(), fields.end());
    order.insert(order.end(), buttons.begin(), buttons.end());
    return order;
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
    : d_(std::make_unique<Private>(this)), title_(title), message_(message) {
    installAccessibility();
    hide();
    d_->delegate = delegate;
    if (delegate) d_->delegateAlive = delegate->alive_;
    d_->makeText();
    d_->makeButtons(QStringList(cancelButtonTitle) + otherButtonTitles);
    setAccessibleName(title);
    setAccessibleDescription(message.trimmed());
}

AlertView::~AlertView() = default;

void AlertView::addSubview(QWidget* view, const QRect& frame) {
    view->setParent(this);
    view->setGeometry(frame);
    view->show();
    d_->subviews.push_back(view);
    if (auto* field = qobject_cast<QLineEdit*>(view)) d_->fields.push_back(field);
}

void AlertView::show(QWidget* inWindowOf) {
    if (inWindowOf->window()->isVisible()) {
        d_->attachTo(inWindowOf->window());
        return;
    }
    // A screen may ask before it is in a window. Until then the alert belongs to it, unseen.
    setParent(inWindowOf);
    hide();
    d_->awaited = inWindowOf;
    inWindowOf->installEventFilter(this);
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
    return static_cast<int>(d_->buttons.size());
}

QPushButton* AlertView::button(int index) const {
    return d_->buttons.at(static_cast<std::size_t>(index));
}

QList<AlertView*> AlertView::shownIn(const QWidget* widget) {
    QList<AlertView*> alerts;
    for (const auto* backdrop : widget->window()->findChildren<AlertBackdrop*>(Qt::FindDirectChildrenOnly)) {
        auto* alert = qobject_cast<AlertView*>(backdrop->panel());
        if (!backdrop->isHidden()) alerts.append(alert);
    }
    return alerts;
}

bool AlertView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == d_->awaited && event->type() == QEvent::Show) {
        d_->awaited->removeEventFilter(this);
        d_->attachTo(d_->awaited->window());
        d_->awaited = nullptr;
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

// Nothing typed into an alert reaches what is below it.
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
            d_->textArea->verticalScrollBar()->triggerAction(QScrollBar::SliderPageStepSub);
            break;
        case Qt::Key_PageDown:
            d_->textArea->verticalScrollBar()->triggerAction(QScrollBar::SliderPageStepAdd);
            break;
        default:
            break;
    }
    event->accept();
}

bool AlertView::focusNextPrevChild(bool next) {
    const auto order = d_->focusOrder();
    const auto count = order.size();
    const auto at = std::find(order.begin(), order.end(), Focus::heldWithin(this));
    const auto index = static_cast<std::size_t>(at - order.begin()) % count;
    for (AlertButton* shown : d_->buttons) shown->setShowsFocus(true);
    order[(index + (next ? 1 : count - 1)) % count]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

void AlertView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath panel;
    panel.addRoundedRect(rect(), cornerRadius, cornerRadius);
    painter.fillPath(panel, Qt::white);
    painter.setClipPath(panel);
    for (const AlertButton* shown : d_->buttons) {
        if (shown->isDown()) painter.fillRect(shown->geometry(), pressedGrey);
    }
}

}  // namespace platform
