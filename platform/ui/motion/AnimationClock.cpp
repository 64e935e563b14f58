#include "platform/ui/motion/AnimationClock.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTimerEvent>
#include <algorithm>
#include <utility>

namespace platform::AnimationClock {

namespace {

bool instantClock = false;

double easedOut(double progress) {
    const double rest = 1 - progress;
    return 1 - rest * rest * rest;
}

// One running animation, a child of its owner and so destroyed with it.
class Animation : public QObject {
public:
    Animation(QObject* owner, double seconds, std::function<void(double)> step, std::function<void()> done)
        : QObject(owner), seconds_(seconds), step_(std::move(step)), done_(std::move(done)) {
        elapsed_.start();
        startTimer(16, Qt::PreciseTimer);
    }

protected:
    void timerEvent(QTimerEvent* event) override {
        const double seconds = static_cast<double>(elapsed_.nsecsElapsed()) / 1e9;
        const double progress = instantClock ? 1.0 : std::min(1.0, seconds / seconds_);
        // Either function may destroy the owner and with it this object: both are called through copies on the stack.
        const QPointer<Animation> self(this);
        const auto step = step_;
        if (step) step(easedOut(progress));
        if (!self || progress < 1.0) return;
        killTimer(event->timerId());
        deleteLater();
        const auto done = std::move(done_);
        if (done) done();
    }

private:
    double seconds_;
    std::function<void(double)> step_;
    std::function<void()> done_;
    QElapsedTimer elapsed_;
};

}  // namespace

void animate(QObject* owner, double seconds, std::function<void(double)> step, std::function<void()> done) {
    Q_ASSERT(owner);
    if (!instantClock && seconds > 0) {
        new Animation(owner, seconds, std::move(step), std::move(done));
        return;
    }
    const QPointer<QObject> alive(owner);
    if (step) step(1.0);
    if (alive && done) done();
}

void setInstant(bool instant) {
    instantClock = instant;
}

bool isInstant() {
    return instantClock;
}

}  // namespace platform::AnimationClock
