#pragma once

class QWidget;

namespace platform {

// Whether a widget can be pressed now: it is on the screen that is seen, no screens are moving and no alert lies over
// it. Fingers and keys find out on their way; a press by assistive technology names its target and is asked this.
// Main thread.
bool isWithinReach(const QWidget* widget);

}  // namespace platform
