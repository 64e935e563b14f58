#pragma once

#include <QList>
#include <QWidget>

namespace platform {

// Lies over other widgets and, while it is shown, keeps every touch, click and turn of the wheel from them. It is how
// alerts and screen transitions learn of each other without knowing each other. Main thread only.
class InputShield : public QWidget {
    Q_OBJECT
public:
    // What takes the shield away: the end of a motion, or an answer of the person.
    enum class Until { motionEnds, answered };

    InputShield(Until until, QWidget* parent) : QWidget(parent), until_(until) {}

    // The shields of one kind that are shown in the window of a widget.
    static QList<InputShield*> shownIn(const QWidget* widget, Until until);

    Until until() const { return until_; }

protected:
    bool event(QEvent* event) override;

private:
    Until until_;
};

}  // namespace platform
