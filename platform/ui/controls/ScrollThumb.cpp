#include "platform/ui/controls/ScrollThumb.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTimerEvent>
#include <algorithm>

#include "platform/ui/drawing/Palette.h"

namespace platform {

namespace {

constexpr int thickness = 4;
constexpr int reach = 10;  // points from the edge within which a press grabs the thumb
constexpr int shortest = 32;
constexpr int margin = 2;
constexpr int restMilliseconds = 800;
constexpr double fadeSeconds = 0.2;

}  // namespace

ScrollThumb::ScrollThumb(QScrollBar* bar, QWidget* parent)
    : QWidget(parent), bar_(bar), opacity_(this, [this] {
          setVisible(opacity_.value() > 0);
          update();
      }) {
    setAccessibleName(QStringLiteral("Scroll position"));
    hide();
}

void ScrollThumb::flash() {
    if (bar_->maximum() <= 0) return;
    opacity_.set(1);
    raise();
    fadeTimer_.start(restMilliseconds, this);
}

void ScrollThumb::place() {
    if (bar_->maximum() <= 0) {
        opacity_.set(0);
        return;
    }
    const int room = parentWidget()->height() - 2 * margin - length();
    const int y = margin + static_cast<int>(static_cast<qint64>(room) * bar_->value() / bar_->maximum());
    setGeometry(parentWidget()->width() - reach, y, reach, length());
}

int ScrollThumb::length() const {
    const qint64 height = parentWidget()->height();
    const qint64 proportional = height * height / std::max<qint64>(1, height + bar_->maximum());
    return static_cast<int>(std::max<qint64>(shortest, proportional));
}

void ScrollThumb::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacity_.value());
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette::quiet);
    painter.drawRoundedRect(QRect(width() - thickness - margin, 0, thickness, height()), thickness / 2.0,
                            thickness / 2.0);
}

void ScrollThumb::mousePressEvent(QMouseEvent* event) {
    grabbedAt_ = qRound(event->position().y());
}

void ScrollThumb::mouseMoveEvent(QMouseEvent* event) {
    const int room = parentWidget()->height() - 2 * margin - length();
    if (room <= 0) return;
    const int y = mapToParent(event->position().toPoint()).y() - grabbedAt_ - margin;
    bar_->setValue(static_cast<int>(static_cast<qint64>(bar_->maximum()) * std::clamp(y, 0, room) / room));
}

void ScrollThumb::leaveEvent(QEvent*) {
    flash();
}

void ScrollThumb::timerEvent(QTimerEvent* event) {
    if (event->timerId() != fadeTimer_.timerId()) return;
    fadeTimer_.stop();
    if (!underMouse()) opacity_.glideTo(0, fadeSeconds);
}

}  // namespace platform
