#pragma once

#include <QObject>

class QWidget;

// A mouse or touch press that has begun and not ended. When a screen or an alert covers the pressed widget, the press
// must be cancelled, or its release would trigger a widget that is no longer visible.
namespace platform::HeldPress {

// Cancels the current press, if any. Buttons inside `within` are reset to up, every widget inside it receives
// QEvent::UngrabMouse, and the rest of the press up to its release is filtered out. Main thread only.
void cancel(const QWidget& within);

// Cancels a press whose release event was lost (another program may have grabbed the mouse) when the next press
// begins. Active while it exists. One instance.
class Watch : public QObject {
public:
    Watch();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool isHeld_ = false;
};

}  // namespace platform::HeldPress
