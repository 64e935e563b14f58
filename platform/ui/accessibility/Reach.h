#pragma once

class QWidget;

namespace platform {

// Whether a widget accepts input now: it is visible, no screen transition runs and no alert covers it. Mouse and key
// events are blocked by shields; actions of assistive technology address a widget directly and must check this. Main
// thread.
bool isWithinReach(const QWidget* widget);

}  // namespace platform
