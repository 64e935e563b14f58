#pragma once

#include <functional>

class QObject;
class QWidget;

// The virtual keyboard that covers the lower part of the window. On systems that shrink the window instead, the covered
// height is 0. Main thread only.
namespace platform::OnScreenKeyboard {

// Height of the widget's lower part that the keyboard covers, in points; 0 while the keyboard is hidden, floating or
// used by another window.
int coveredHeight(const QWidget* widget);

// Calls `moved` whenever the keyboard is shown, hidden or resized, until `context` is destroyed.
void whenMoved(QObject* context, const std::function<void()>& moved);

// Shows the keyboard whenever a text field gets the focus and hides it when another widget does, until `context` is
// destroyed. Qt itself shows it only when a field is tapped.
void followFocus(QObject* context);

}  // namespace platform::OnScreenKeyboard
