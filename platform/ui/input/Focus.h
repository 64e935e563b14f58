#pragma once

#include <QObject>

class QWidget;

// Keyboard focus where no widget asks for it: after screens and alerts come or go, on Tab, and whether to draw the
// focus frame. Main thread only.
namespace platform::Focus {

// The focus widget of the window if it is `within` or inside it, also while the window is inactive; else nullptr.
QWidget* heldWithin(const QWidget* within);

// Whether the widget accepts text input.
bool isTextField(const QWidget* widget);

// Clears the focus if it is inside `within`, which ends the editing of a field.
void endEditing(const QWidget* within);

// Moves the focus to the next or previous Tab stop inside `within`, in reading order, wrapping around. A FocusScope
// defines the order of its own parts. Returns false when there is no Tab stop.
bool moveOn(QWidget& within, bool forward);

// Whether the last input was a key rather than a press. Only then is a focus frame drawn.
bool isByKeyboard();
// Whether the widget has the focus and draws its frame.
bool isSeen(const QWidget* widget);

// Keeps isByKeyboard() up to date while it exists, by an application-wide event filter. One instance.
class Watch : public QObject {
public:
    Watch();
    ~Watch() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

// Gives the focus to the first visible widget inside `within` with Qt::ClickFocus; to `within` itself when there is
// none. Text fields are skipped, since focus would start editing; so are labels whose text can be selected, since it
// would show their cursor.
void giveTo(QWidget* within);

}  // namespace platform::Focus
