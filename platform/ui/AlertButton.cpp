#include "platform/ui/AlertButton.h"

#include <QPainter>

#include "platform/ui/AlertFont.h"
#include "platform/ui/Focus.h"
#include "platform/ui/Palette.h"

namespace platform {

namespace {

constexpr QColor hairline(161, 176, 176, 110);
constexpr int fontSize = 16;

}  // namespace

AlertButton::AlertButton(const QString& title, Weight weight, QWidget* parent)
    : QPushButton(title, parent), weight_(weight) {
    setFocusPolicy(Qt::TabFocus);
    setAutoDefault(false);
    setFont(alertFont(fontSize, weight == Weight::accent));
}

void AlertButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(0, 0, width(), 1, hairline);
    if (beside_) painter.fillRect(0, 0, 1, height(), hairline);
    painter.setPen(weight_ == Weight::accent ? palette::accentInk : palette::ink);
    painter.drawText(rect(), Qt::AlignCenter, text());
    if (!Focus::isSeen(this)) return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette::accentInk, 1.5));
    painter.drawRoundedRect(QRectF(rect()).adjusted(5, 5, -4, -4), 6, 6);
}

}  // namespace platform
