#include "platform/ui/motion/KineticScroller.h"

#include <QScrollBar>
#include <QTimerEvent>
#include <algorithm>
#include <cmath>

#include "platform/ui/motion/AnimationClock.h"

namespace platform {

namespace {

constexpr int frameMilliseconds = 16;
constexpr double decayMilliseconds = 325;
constexpr double slowest = 20;
constexpr double fastest = 8000;
constexpr qint64 sampleMilliseconds = 100;
constexpr qint64 shortestMilliseconds = 30;

}  // namespace

KineticScroller::KineticScroller(QScrollBar* bar) : bar_(bar) {
    clock_.start();
}

bool KineticScroller::begin(int y) {
    const bool wasMoving = isMoving();
    stop();
    samples_.assign(1, {clock_.elapsed(), y});
    return wasMoving;
}

void KineticScroller::follow(int y) {
    if (samples_.empty()) return;
    bar_->setValue(bar_->value() - (y - samples_.back().y));
    const qint64 now = clock_.elapsed();
    samples_.push_back({now, y});
    while (samples_.size() > 2 && now - samples_.front().milliseconds > sampleMilliseconds) samples_.pop_front();
}

void KineticScroller::letGo() {
    if (samples_.empty()) return;
    speed_ = std::clamp(-fingerSpeed(), -fastest, fastest);
    samples_.clear();
    if (std::abs(speed_) < slowest) return;
    startValue_ = bar_->value();
    if (AnimationClock::isInstant()) {
        bar_->setValue(qRound(startValue_ + speed_ * decayMilliseconds / 1000));
        return;
    }
    lastValue_ = bar_->value();
    clock_.restart();
    timer_.start(frameMilliseconds, Qt::PreciseTimer, this);
}

void KineticScroller::stop() {
    timer_.stop();
}

// 0 when the finger rested before the release, or when the sampled time is too short for an estimate.
double KineticScroller::fingerSpeed() const {
    const qint64 now = clock_.elapsed();
    const qint64 duration = now - samples_.front().milliseconds;
    if (duration < shortestMilliseconds || now - samples_.back().milliseconds > sampleMilliseconds) return 0;
    return 1000.0 * (samples_.back().y - samples_.front().y) / static_cast<double>(duration);
}

void KineticScroller::timerEvent(QTimerEvent* event) {
    if (event->timerId() != timer_.timerId()) return;
    if (bar_->value() != lastValue_) {
        stop();
        return;
    }
    const double decay = std::exp(-static_cast<double>(clock_.elapsed()) / decayMilliseconds);
    const int value = qRound(startValue_ + speed_ * decayMilliseconds / 1000 * (1 - decay));
    bar_->setValue(value);
    lastValue_ = bar_->value();
    if (std::abs(speed_) * decay < slowest || lastValue_ != value) stop();
}

}  // namespace platform
