#include "platform/ui/alert/AlertButton.h"

#include <QPainter>

#include "platform/ui/alert/AlertFont.h"
#include "platform/ui/drawing/Palette.h"
#include "platform/ui/input/Focus.h"

namespace platform {

namespace {

constexpr QColor hairline(161, 176, 176, 110);
constexpr int fontSize = 16;

const QColor& inkOf(AlertButton::Weight weight) {
    switch (weight) {
        case AlertButton::Weight::accent:
            return palette::accentInk;
        case AlertButton::Weight::destructive:
            return palette::redInk;
        case AlertButton::Weight::plain:
            break;
    }
    return palette::ink;
}

}  // namespace

AlertButton::AlertButton(const QString& title, QWidget* parent) : QPushButton(title, parent) {
    setFocusPolicy(Qt::TabFocus);
    setAutoDefault(false);
    setWeight(Weight::plain);
}

void AlertButton::setWeight(Weight weight) {
    weight_ = weight;
    setFont(alertFont(fontSize, weight == Weight::accent));
    update();
}

void AlertButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(0, 0, width(), 1, hairline);
    if (beside_) painter.fillRect(0, 0, 1, height(), hairline);
    painter.setPen(inkOf(weight_));
    painter.drawText(rect(), Qt::AlignCenter, text());
    if (!Focus::isSeen(this)) return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette::accentInk, 1.5));
    painter.drawRoundedRect(QRectF(rect()).adjusted(5, 5, -4, -4), 6, 6);
}

}  // namespace platform
