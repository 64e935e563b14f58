#pragma once

#include <QList>
#include <QWidget>

namespace platform {

// Covers other widgets and consumes every mouse, touch and wheel event while it is shown. Base of the alert's backdrop
// and of screen transitions, which detect each other through shownIn() and need no other link. Main thread only.
class InputShield : public QWidget {
    Q_OBJECT
public:
    // What ends the shield: the end of an animation, or an answer of the user.
    enum class Until { motionEnds, answered };

    InputShield(Until until, QWidget* parent) : QWidget(parent), until_(until) {}

    // The shields of one kind that are shown in the widget's window. Walks all widgets of the window.
    static QList<InputShield*> shownIn(const QWidget* widget, Until until);

    Until until() const { return until_; }

protected:
    bool event(QEvent* event) override;

private:
    Until until_;
};

}  // namespace platform
