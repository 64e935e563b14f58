#pragma once

#include <QObject>

class QWidget;

// The press of a finger or of the mouse that has begun and not ended. Whatever the finger is on when something else
// comes over it (a screen, by a key; an alert) is out of the person's sight before the finger leaves it.
namespace platform::HeldPress {

// Ends the press, if there is one, without effect. What is inside `within` looks as if it had not been pressed and is
// told by a QEvent::UngrabMouse; what the finger does until it leaves reaches no widget. Main thread only.
void cancel(const QWidget& within);

// Lets go of a press whose end was never told (another program may have taken the mouse) when the next one begins. The
// app has one as long as it has a window.
class Watch : public QObject {
public:
    Watch();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool isHeld_ = false;
};

}  // namespace platform::HeldPress
