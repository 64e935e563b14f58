#pragma once

#include <functional>

class QObject;
class QWidget;

// The keyboard that a device without a real one shows over the lower part of the window. Where the system makes the
// window smaller instead, it covers nothing. Main thread only.
namespace platform::OnScreenKeyboard {

// Points at the lower edge of a widget that the keyboard covers; 0 while it is hidden, floats elsewhere or serves
// another window.
int coveredHeight(const QWidget* widget);

// Calls `moved` whenever the keyboard comes, goes or changes its size, as long as `context` lives.
void whenMoved(QObject* context, const std::function<void()>& moved);

// Has the keyboard come whenever a text field gets the focus, by whatever way, and go when something else gets it, as
// long as `context` lives. The toolkit alone calls it for a tap on a field only.
void followFocus(QObject* context);

}  // namespace platform::OnScreenKeyboard
