#pragma once

#include <QAbstractButton>
#include <QPushButton>

#include "platform/ui/motion/GlidingValue.h"

namespace platform {

// The widgets that delete a row by touch, inside its cell: the round control at the left in edit mode, and the "Delete"
// button, which lies beyond the right edge until a swipe moves the row aside.
class CellDeletion {
public:
    static constexpr int controlWidth = 36;
    static constexpr int buttonWidth = 74;

    // `moved` is called whenever the cell must update its layout.
    CellDeletion(QWidget* cell, const std::function<void()>& moved);

    void showControl(bool shown, bool animated);

    // Moves the row to the left by `points`. Beyond buttonWidth the button grows.
    void uncover(int points);
    void glideTo(int points);

    // Points by which the control moves the content to the right, and by which a swipe moves it to the left.
    int controlShift() const { return qRound(control_.value()); }
    int uncovered() const { return qRound(uncovered_.value()); }
    bool isOpening() const { return uncovered_.target() > 0; }

    void layout(QSize cell);

    QAbstractButton* controlButton() const { return controlButton_; }
    QPushButton* deleteButton() const { return deleteButton_; }

private:
    QAbstractButton* controlButton_;
    QPushButton* deleteButton_;
    GlidingValue control_;
    GlidingValue uncovered_;
};

}  // namespace platform
