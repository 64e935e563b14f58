#include "platform/ui/motion/GlidingValue.h"

#include "platform/ui/motion/AnimationClock.h"

namespace platform {

GlidingValue::GlidingValue(QObject* owner, std::function<void()> changed)
    : owner_(owner), changed_(std::move(changed)) {}

void GlidingValue::set(double value) {
    ++run_;
    target_ = value;
    if (value_ == value) return;
    value_ = value;
    changed_();
}

void GlidingValue::glideTo(double target, double seconds) {
    const int run = ++run_;
    const double start = value_;
    target_ = target;
    if (start == target) return;
    AnimationClock::animate(owner_, seconds, [this, run, start, target](double progress) {
        if (run != run_) return;
        value_ = start + (target - start) * progress;
        changed_();
    });
}

}  // namespace platform
