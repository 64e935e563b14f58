#pragma once

#include <QObject>
#include <functional>

namespace platform {

// The one clock that every animation goes through, so that tests can make all of them instant. Main thread only.
namespace AnimationClock {

// Calls `step` with the progress from 0 to 1 (eased out) about every 16 ms during `seconds`, then `done` once. The
// animation ends without another call when `owner` is destroyed. When the clock is instant both run before the
// function returns: step(1), done().
void animate(QObject* owner, double seconds, std::function<void(double)> step, std::function<void()> done = {});

void setInstant(bool instant);
bool isInstant();

}  // namespace AnimationClock

}  // namespace platform
