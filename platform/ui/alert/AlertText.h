#pragma once

#include <QScrollArea>

#include "platform/ui/motion/KineticScroller.h"

namespace platform {

class AlertLabel;
class ScrollThumb;

// An alert's title and, below it, its message. Text that is higher than its room scrolls under a finger, the wheel and
// the Page keys.
class AlertText : public QScrollArea {
public:
    AlertText(const QString& title, const QString& message, QWidget* panel);

    // Takes the upper part of a panel of this width, as high as the text but no higher than the room. Points.
    void layOut(int panelWidth, int room);
    void scroll(bool down);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    AlertLabel* title_;
    AlertLabel* message_;
    KineticScroller kinetic_;
    ScrollThumb* thumb_;
};

}  // namespace platform
