#pragma once

#include <QObject>

class QWidget;

// Who gets the keyboard when nobody in particular asked for it.
namespace platform::Focus {

// The widget inside `within` that had the focus last, or has it, also while the window is not the active one.
QWidget* heldWithin(const QWidget* within);

// Whether typing into this widget edits a text.
bool isTextField(const QWidget* widget);

// Takes the focus from whatever inside `within` has it, which ends the editing of a field.
void endEditing(const QWidget* within);

// Gives the focus to what comes next, or before, inside `within` in reading order, round and round; a
// FocusScope gives its own order. Returns whether there was anything.
bool moveOn(QWidget& within, bool forward);

// Whether the person uses the keyboard just now, not mouse or finger: then it is to be seen where the focus is.
bool isByKeyboard();
bool isSeen(const QWidget* widget);

// Watches whether keys or presses come. The app has one as long as it has a window.
class Watch : public QObject {
public:
    Watch();
    ~Watch() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

// Gives the focus to the first visible widget inside `within` that takes it on a click; never to a text field, which
// would begin to edit. Gives it to `within` itself when there is none.
void giveTo(QWidget* within);

}  // namespace platform::Focus
