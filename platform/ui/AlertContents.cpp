#include "platform/ui/AlertContents.h"

#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>

#include "platform/ui/AlertButton.h"
#include "platform/ui/AlertLabel.h"

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

AlertContents::AlertContents(QWidget* panel, const QString& title, const QString& message,
                             const QStringList& buttonTitles)
    : panel_(panel) {
    makeText(title, message);
    makeButtons(buttonTitles);
}

void AlertContents::makeText(const QString& title, const QString& message) {
    textArea_ = new QScrollArea(panel_);
    textArea_->setFrameShape(QFrame::NoFrame);
    textArea_->setFocusPolicy(Qt::NoFocus);
    textArea_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* text = new QWidget;
    title_ = new AlertLabel(title, alertFont(titleSize, true), text);
    message_ = new AlertLabel(message, alertFont(messageSize, false), text);
    textArea_->setWidget(text);
    textArea_->viewport()->setAutoFillBackground(false);
    text->setAutoFillBackground(false);
}

void AlertContents::makeButtons(const QStringList& titles) {
    const int count = static_cast<int>(titles.size());
    for (int index = 0; index < count; ++index) {
        auto* made = new AlertButton(titles[index], weightOf(index, count), panel_);
        made->setStandsBesideAnother(count == 2 && index == 1);
        buttons_.push_back(made);
    }
}

void AlertContents::layOut(int windowHeight) {
    const int buttonsHeight = buttonRows() * buttonHeight;
    int bottom = layOutText(windowHeight - 2 * windowMargin - buttonsHeight - bottomMargin);
    for (const QWidget* view : subviews_) bottom = std::max(bottom, view->geometry().bottom() + 1);
    panel_->resize(panelWidth, layOutButtons(bottom + bottomMargin));
}

// Returns where the text ends. Text that is higher than the room scrolls.
int AlertContents::layOutText(int room) {
    const int width = panelWidth - 2 * sideMargin;
    const int titleHeight = title_->heightForWidth(width);
    const int messageHeight = message_->heightForWidth(width);
    const int messageTop = topMargin + titleHeight + (titleHeight && messageHeight ? titleGap : 0);
    title_->setGeometry(sideMargin, topMargin, width, titleHeight);
    message_->setGeometry(sideMargin, messageTop, width, messageHeight);
    const int bottom = messageTop + messageHeight;
    textArea_->widget()->resize(panelWidth, bottom);
    textArea_->setGeometry(0, 0, panelWidth, std::min(bottom, room));
    return textArea_->height();
}

// Returns where the buttons end.
int AlertContents::layOutButtons(int top) {
    const bool inARow = buttons_.size() == 2;
    const int width = inARow ? panelWidth / 2 : panelWidth;
    int x = 0;
    int y = top;
    for (AlertButton* placed : buttons_) {
        placed->setGeometry(x, y, width, buttonHeight);
        if (inARow) {
            x += width;
        } else {
            y += buttonHeight;
        }
    }
    return top + buttonRows() * buttonHeight;
}

std::vector<QWidget*> AlertContents::focusOrder() const {
    std::vector<QWidget*> order(fields_.begin(), fields_.end());
    order.insert(order.end(), buttons_.begin(), buttons_.end());
    return order;
}

void AlertContents::addSubview(QWidget* view, const QRect& frame) {
    view->setParent(panel_);
    view->setGeometry(frame);
    view->show();
    subviews_.push_back(view);
    if (auto* field = qobject_cast<QLineEdit*>(view)) fields_.push_back(field);
}

int AlertContents::buttonRows() const {
    return buttons_.size() == 2 ? 1 : static_cast<int>(buttons_.size());
}

void AlertContents::scrollText(bool down) {
    textArea_->verticalScrollBar()->triggerAction(down ? QScrollBar::SliderPageStepAdd : QScrollBar::SliderPageStepSub);
}

void AlertContents::paint(QPainter& painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath panel;
    panel.addRoundedRect(panel_->rect(), cornerRadius, cornerRadius);
    painter.fillPath(panel, Qt::white);
    painter.setClipPath(panel);
    for (const AlertButton* shown : buttons_) {
        if (shown->isDown()) painter.fillRect(shown->geometry(), pressedGrey);
    }
}

}  // namespace platform
