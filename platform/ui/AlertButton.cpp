#include "platform/ui/AlertButton.h"

#include <QPainter>

#include "platform/ui/Palette.h"

namespace platform {

namespace {

constexpr QColor hairline(161, 176, 176, 110);
constexpr int fontSize = 16;

QColor titleColor(AlertButton::Weight weight) {
    switch (weight) {
        case AlertButton::Weight::quiet:
            return palette::quiet;
        case AlertButton::Weight::accent:
            return palette::accent;
        case AlertButton::Weight::plain:
            break;
    }
    return palette::ink;
}

}  // namespace

AlertButton::AlertButton(const QString& title, Weight weight, QWidget* parent)
    : QPushButton(title, parent), weight_(weight) {
    setFocusPolicy(Qt::TabFocus);
    setAutoDefault(false);
    QFont font(QStringLiteral("Helvetica"));
    font.setPixelSize(fontSize);
    font.setBold(weight == Weight::accent);
    setFont(font);
}

void AlertButton::setShowsFocus(bool shows) {
    showsFocus_ = shows;
    update();
}

void AlertButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(0, 0, width(), 1, hairline);
    if (beside_) painter.fillRect(0, 0, 1, height(), hairline);
    painter.setPen(titleColor(weight_));
    painter.drawText(rect(), Qt::AlignCenter, text());
    if (!hasFocus() || !showsFocus_) return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette::accent, 1.5));
    painter.drawRoundedRect(QRectF(rect()).adjusted(5, 5, -4, -4), 6, 6);
}

}  // namespace platform
