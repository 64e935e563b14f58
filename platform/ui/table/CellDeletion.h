#pragma once

#include <QAbstractButton>
#include <QPushButton>

#include "platform/ui/motion/GlidingValue.h"

namespace platform {

// The way to delete a row with a finger, inside its cell: the round control that edit mode shows at the left and the
// "Delete" button that lies beyond the right edge until the row is pushed aside.
class CellDeletion {
public:
    static constexpr int controlWidth = 36;
    static constexpr int buttonWidth = 74;

    // `moved` is called whenever the cell has to lay itself out again.
    CellDeletion(QWidget* cell, std::function<void()> moved);

    void showControl(bool shown, bool animated);

    // Pushes the row this far to the left; the button grows with what exceeds its width.
    void uncover(int points);
    void glideTo(int points);

    // Where the row's own things begin: right of the control, less what the row is pushed aside.
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
