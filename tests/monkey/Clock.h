#pragma once

// The time of the main thread, which is the monkey's: it passes only when the monkey lets it pass. A screen can so be
// left at any moment of its animation, the same one in every run, and nobody waits for anything. Other threads have
// the machine's time.
namespace monkey::Clock {

// From its first call on; called on the main thread.
void advance(int milliseconds);

}  // namespace monkey::Clock
