#pragma once

#include <QObject>
#include <functional>

namespace platform {

// Runs every animation of the app, so that tests can make all of them instant. Main thread only.
namespace AnimationClock {

// Calls `step` with the progress from 0 to 1 (cubic ease-out) every 16 ms for `seconds`, then `done` once. Destroying
// `owner` cancels the animation without another call. When the clock is instant, step(1) and done() run before the
// function returns.
void animate(QObject* owner, double seconds, std::function<void(double)> step, std::function<void()> done = {});

void setInstant(bool instant);
bool isInstant();

}  // namespace AnimationClock

}  // namespace platform
