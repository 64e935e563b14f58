#pragma once

#include <QScrollArea>

#include "platform/ui/motion/KineticScroller.h"

namespace platform {

class AlertLabel;
class ScrollThumb;

// An alert's title and message. Text higher than the available space scrolls by touch, wheel and the Page keys.
class AlertText : public QScrollArea {
public:
    AlertText(const QString& title, const QString& message, QWidget* panel);

    // Takes the top of a panel of this width, at the height of the text but at most `room`. Points.
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
