#pragma once

#include <functional>

class QObject;

namespace platform {

// A number that moves to its target over time, through AnimationClock. A new target takes over from wherever the
// number is. A member of its owner, which lives at least as long. Main thread only.
class GlidingValue {
public:
    GlidingValue(QObject* owner, std::function<void()> changed);
    GlidingValue(const GlidingValue&) = delete;
    GlidingValue& operator=(const GlidingValue&) = delete;

    double value() const { return value_; }
    double target() const { return target_; }

    void set(double value);
    void glideTo(double target, double seconds);

private:
    QObject* owner_;
    std::function<void()> changed_;
    double value_ = 0;
    double target_ = 0;
    int run_ = 0;
};

}  // namespace platform
