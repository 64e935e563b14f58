#pragma once

#include <functional>

class QObject;

namespace platform {

// An animated number. A new target replaces the running animation and starts at the current value. `changed` is called
// after every change. A member of its owner, which must outlive it. Main thread only.
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
    int run_ = 0;  // generation counter: steps of a replaced animation are ignored
};

}  // namespace platform
