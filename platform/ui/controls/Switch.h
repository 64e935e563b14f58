#pragma once

#include <QAbstractButton>
#include <QColor>

#include "platform/ui/motion/GlidingValue.h"

namespace platform {

// An on/off switch, 51 by 31 points, operated by tap, drag or key. valueChanged() reports user input only; setOn()
// does not emit it. Main thread only.
class Switch : public QAbstractButton {
    Q_OBJECT
public:
    explicit Switch(QWidget* parent = nullptr);

    bool isOn() const { return isChecked(); }
    void setOn(bool on, bool animated);
    void setOnTintColor(const QColor& color);
    QColor onTintColor() const { return onTintColor_; }

    QSize sizeHint() const override;

Q_SIGNALS:
    // The user has changed the state; isOn() is the new one.
    void valueChanged(platform::Switch* sender);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void glideHome();

    QColor onTintColor_{55, 171, 200};
    GlidingValue knob_;  // the knob's drawn position: 0 off, 1 on
    double pressedKnob_ = 0;
    int pressedX_ = 0;
    bool dragged_ = false;
};

}  // namespace platform
