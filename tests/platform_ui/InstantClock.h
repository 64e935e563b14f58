#pragma once

#include "platform/ui/motion/AnimationClock.h"

// Makes every animation instant as long as it lives.
class InstantClock {
public:
    InstantClock() { platform::AnimationClock::setInstant(true); }
    ~InstantClock() { platform::AnimationClock::setInstant(false); }
    InstantClock(const InstantClock&) = delete;
    InstantClock& operator=(const InstantClock&) = delete;
};
