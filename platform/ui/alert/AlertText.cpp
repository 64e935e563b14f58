#include "platform/ui/alert/AlertText.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>

#include "platform/ui/alert/AlertFont.h"
#include "platform/ui/alert/AlertLabel.h"
#include "platform/ui/controls/ScrollThumb.h"

namespace platform {

namespace {

constexpr int sideMargin = 12;
constexpr int topMargin = 15;
constexpr int titleGap = 6;
constexpr int titleSize = 17;
constexpr int messageSize = 15;

}  // namespace

AlertText::AlertText(const QString& title, const QString& message, QWidget* panel)
    : QScrollArea(panel),
      title_(new AlertLabel(title, alertFont(titleSize, true), nullptr)),
      message_(new AlertLabel(message, alertFont(messageSize, false), nullptr)),
      kinetic_(verticalScrollBar()),
      thumb_(new ScrollThumb(verticalScrollBar(), this)) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* text = new QWidget;
    title_->setParent(text);
    message_->setParent(text);
    setWidget(text);
    viewport()->setAutoFillBackground(false);
    text->setAutoFillBackground(false);
}

void AlertText::layOut(int panelWidth, int room) {
    const int width = panelWidth - 2 * sideMargin;
    const int titleHeight = title_->heightForWidth(width);
    const int messageHeight = message_->heightForWidth(width);
    const int messageTop = topMargin + titleHeight + (titleHeight && messageHeight ? titleGap : 0);
    title_->setGeometry(sideMargin, topMargin, width, titleHeight);
    message_->setGeometry(sideMargin, messageTop, width, messageHeight);
    const int bottom = messageTop + messageHeight;
    widget()->resize(panelWidth, bottom);
    setGeometry(0, 0, panelWidth, std::min(bottom, room));
    thumb_->place();
}

void AlertText::scroll(bool down) {
    verticalScrollBar()->triggerAction(down ? QScrollBar::SliderPageStepAdd : QScrollBar::SliderPageStepSub);
}

void AlertText::mousePressEvent(QMouseEvent* event) {
    kinetic_.begin(event->position().toPoint().y());
}

void AlertText::mouseMoveEvent(QMouseEvent* event) {
    kinetic_.follow(event->position().toPoint().y());
}

void AlertText::mouseReleaseEvent(QMouseEvent*) {
    kinetic_.letGo();
}

void AlertText::showEvent(QShowEvent* event) {
    QScrollArea::showEvent(event);
    thumb_->flash();
}

void AlertText::scrollContentsBy(int dx, int dy) {
    QScrollArea::scrollContentsBy(dx, dy);
    thumb_->place();
    thumb_->flash();
}

}  // namespace platform
