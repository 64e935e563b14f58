#pragma once

namespace platform {

// Teaches Qt what our controls are to a screen reader: a switch, a button, an alert, a list and its rows. Called before
// the first window is made; only the first call does anything. Main thread.
void installAccessibility();

}  // namespace platform
