#pragma once

namespace platform {

// Teaches Qt what our controls are to a screen reader: a switch, a button, an alert, a list and its rows. Every control
// asks for it as it is made, and the app before its window, which holds them; only the first call does anything.
void installAccessibility();

}  // namespace platform
