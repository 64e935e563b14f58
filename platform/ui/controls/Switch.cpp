#include "platform/ui/controls/Switch.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "platform/ui/drawing/Palette.h"
#include "platform/ui/input/Focus.h"

namespace platform {

namespace {

constexpr QSize trackSize(51, 31);
constexpr double margin = 2;  // between track and knob
constexpr double knobSize = 27;
constexpr double pressedStretch = 4;                                  // extra width of a pressed knob
constexpr double travel = trackSize.width() - 2 * margin - knobSize;  // of the knob's left edge
constexpr int dragThreshold = 4;
constexpr double seconds = 0.2;
constexpr double disabledOpacity = 0.5;

QColor mixed(const QColor& from, const QColor& to, double share) {
    const auto mix = [share](int a, int b) { return qRound(a + (b - a) * share); };
    return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

// A bar on the free side when on, a ring when off, so that the state does not depend on colour alone.
void paintMarks(QPainter& painter, const QRectF& track, double knob) {
    painter.setBrush(Qt::NoBrush);
    painter.setOpacity(painter.opacity() * std::max(knob, 1 - knob));
    if (knob > 0.5) {
        painter.setPen(QPen(Qt::white, 1.5, Qt::SolidLine, Qt::RoundCap));
        const double x = track.left() + 13;
        painter.drawLine(QPointF(x, track.center().y() - 4.5), QPointF(x, track.center().y() + 4.5));
    } else {
        painter.setPen(QPen(Qt::white, 1.5));
        painter.drawEllipse(QPointF(track.right() - 13, track.center().y()), 4, 4);
    }
}

}  // namespace

Switch::Switch(QWidget* parent) : QAbstractButton(parent), knob_(this, [this] { update(); }) {
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    resize(Switch::sizeHint());
    connect(this, &QAbstractButton::toggled, this, [this] { glideHome(); });
    connect(this, &QAbstractButton::clicked, this, [this] { Q_EMIT valueChanged(this); });
}

void Switch::setOn(bool on, bool animated) {
    setChecked(on);
    if (!animated) knob_.set(on ? 1 : 0);
}

void Switch::setOnTintColor(const QColor& color) {
    onTintColor_ = color;
    update();
}

QSize Switch::sizeHint() const {
    return trackSize;
}

void Switch::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    setDown(true);
    pressedX_ = qRound(event->position().x());
    pressedKnob_ = knob_.value();
    dragged_ = false;
}

void Switch::mouseMoveEvent(QMouseEvent* event) {
    if (!isDown()) return;
    const double moved = event->position().x() - pressedX_;
    dragged_ = dragged_ || std::abs(moved) > dragThreshold;
    if (dragged_) knob_.set(std::clamp(pressedKnob_ + moved / travel, 0.0, 1.0));
}

void Switch::mouseReleaseEvent(QMouseEvent* event) {
    if (!isDown() || event->button() != Qt::LeftButton) return;
    setDown(false);
    const bool switches = dragged_ ? (knob_.value() > 0.5) != isOn() : hitButton(event->position().toPoint());
    if (switches) {
        click();
    } else {
        glideHome();
    }
}

bool Switch::event(QEvent* event) {
    if (event->type() == QEvent::UngrabMouse) glideHome();
    return QAbstractButton::event(event);
}

void Switch::glideHome() {
    knob_.glideTo(isOn() ? 1 : 0, seconds);
}

void Switch::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            if (!event->isAutoRepeat()) click();
            break;
        default:
            QAbstractButton::keyPressEvent(event);
    }
}

void Switch::paintEvent(QPaintEvent*) {
    const double knob = knob_.value();
    QRectF track(QPointF(0, 0), QSizeF(trackSize));
    track.moveCenter(QRectF(rect()).center());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled()) painter.setOpacity(disabledOpacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(palette::quiet, onTintColor_, knob));
    painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);
    const double stretch = isDown() ? pressedStretch : 0;
    const QRectF knobRect(track.left() + margin + (travel - stretch) * knob, track.top() + margin, knobSize + stretch,
                          knobSize);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(knobRect, knobSize / 2, knobSize / 2);
    if (Focus::isSeen(this)) {
        painter.setPen(QPen(palette::accentInk, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(track.adjusted(0.75, 0.75, -0.75, -0.75), 15, 15);
        painter.setPen(Qt::NoPen);
    }
    paintMarks(painter, track, knob);
}

}  // namespace platform
