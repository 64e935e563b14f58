#include "platform/ui/alert/AlertContents.h"

#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "platform/ui/alert/AlertButton.h"
#include "platform/ui/alert/AlertText.h"
#include "platform/ui/drawing/Palette.h"

namespace platform {

namespace {

constexpr int panelWidth = 284;
constexpr int cornerRadius = 10;
constexpr int bottomMargin = 16;
constexpr int buttonHeight = 44;
constexpr int windowMargin = 12;  // between panel and window, above and below

}  // namespace

AlertContents::AlertContents(QWidget* panel, const QString& title, const QString& message,
                             const QStringList& buttonTitles)
    : panel_(panel), text_(new AlertText(title, message, panel)) {
    makeButtons(buttonTitles);
}

void AlertContents::makeButtons(const QStringList& titles) {
    const int count = static_cast<int>(titles.size());
    for (int index = 0; index < count; ++index) {
        auto* made = new AlertButton(titles[index], panel_);
        made->setStandsBesideAnother(count == 2 && index == 1);
        buttons_.push_back(made);
    }
    giveAccent();
}

void AlertContents::setDestructive(int buttonIndex) {
    buttons_.at(static_cast<std::size_t>(buttonIndex))->setWeight(AlertButton::Weight::destructive);
    giveAccent();
}

// The last button that is not destructive gets the accent; the cancel button only when it is the only one.
void AlertContents::giveAccent() {
    const auto isSafe = [](const AlertButton* button) { return button->weight() != AlertButton::Weight::destructive; };
    for (AlertButton* button : buttons_)
        if (isSafe(button)) button->setWeight(AlertButton::Weight::plain);
    const auto last = std::find_if(buttons_.rbegin(), buttons_.rend(), isSafe);
    const bool isCancel = last == std::prev(buttons_.rend());
    if (last != buttons_.rend() && (!isCancel || buttons_.size() == 1)) (*last)->setWeight(AlertButton::Weight::accent);
}

void AlertContents::layOut(int windowHeight) {
    const int buttonsHeight = buttonRows() * buttonHeight;
    text_->layOut(panelWidth, windowHeight - 2 * windowMargin - buttonsHeight - bottomMargin);
    int bottom = text_->height();
    for (const QWidget* view : subviews_) bottom = std::max(bottom, view->geometry().bottom() + 1);
    panel_->resize(panelWidth, layOutButtons(bottom + bottomMargin));
}

// Returns the bottom of the buttons.
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

void AlertContents::paint(QPainter& painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath panel;
    panel.addRoundedRect(panel_->rect(), cornerRadius, cornerRadius);
    painter.fillPath(panel, Qt::white);
    painter.setClipPath(panel);
    for (const AlertButton* shown : buttons_) {
        if (shown->isDown()) painter.fillRect(shown->geometry(), palette::pressedVeil);
    }
}

}  // namespace platform
