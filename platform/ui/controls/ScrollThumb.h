#pragma once

#include <QBasicTimer>
#include <QWidget>

#include "platform/ui/motion/GlidingValue.h"

class QScrollBar;

namespace platform {

// An overlay scroll bar at the right edge of its parent: visible during scrolling or while the pointer is near, and
// draggable. It takes no layout space and, while hidden, no presses.
class ScrollThumb : public QWidget {
    Q_OBJECT
public:
    ScrollThumb(QScrollBar* bar, QWidget* parent);

    // Shows the thumb; it fades after 0.8 s unless the pointer is over it.
    void flash();
    // Updates the geometry from the bar's value and range and the parent's size.
    void place();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    int length() const;

    QScrollBar* bar_;
    GlidingValue opacity_;
    QBasicTimer fadeTimer_;
    int grabbedAt_ = 0;
};

}  // namespace platform
