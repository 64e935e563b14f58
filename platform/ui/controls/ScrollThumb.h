#pragma once

#include <QBasicTimer>
#include <QWidget>

#include "platform/ui/motion/GlidingValue.h"

class QScrollBar;

namespace platform {

// Shows over the right edge of its parent which part of the content is in sight, while it scrolls or the pointer is
// near, and can be dragged. It takes no room and, while hidden, no presses.
class ScrollThumb : public QWidget {
    Q_OBJECT
public:
    ScrollThumb(QScrollBar* bar, QWidget* parent);

    // Appears and fades after a moment, unless the pointer is on it.
    void flash();
    // Follows the bar's value and range and the parent's size.
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
