#include "benchmarks/workers/FrameClock.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QWidget>
#include <stdexcept>

#include "benchmarks/Figures.h"

namespace bench {

namespace {

constexpr double longestWait = 120;
constexpr qint64 settledMilliseconds = 60;
constexpr unsigned long restMicroseconds = 100;

}  // namespace

FrameClock::FrameClock() {
    QCoreApplication::instance()->installEventFilter(this);
}

bool FrameClock::eventFilter(QObject* watched, QEvent* event) {
    if (watched == disregarded_) return false;
    hadEvents_ = true;
    if (event->type() != QEvent::Paint || !watched->isWidgetType()) return false;
    hasPainted_ = true;
    if (isShown_ && isShown_(*static_cast<QWidget*>(watched))) hasShown_ = true;
    return false;
}

double FrameClock::step() {
    hadEvents_ = false;
    hasPainted_ = false;
    const double seconds = secondsOf([] { QCoreApplication::processEvents(); });
    if (!hadEvents_) QThread::usleep(restMicroseconds);
    return seconds;
}

double FrameClock::untilPainted(const IsShown& isShown, const std::function<void()>& event) {
    isShown_ = isShown;
    hasShown_ = false;
    const double seconds = until([this] { return hasShown_; }, event);
    isShown_ = nullptr;
    return seconds;
}

double FrameClock::until(const std::function<bool()>& isDone, const std::function<void()>& event) {
    QElapsedTimer waited;
    waited.start();
    return secondsOf([&] {
        event();
        while (!isDone()) {
            step();
            if (waited.elapsed() > longestWait * 1000) throw std::runtime_error("the app did not get there");
        }
    });
}

std::vector<double> FrameClock::framesUntil(const std::function<bool()>& isDone) {
    std::vector<double> frames;
    double worked = 0;
    while (!isDone()) {
        worked += step();
        if (hasPainted_) frames.push_back(worked);
        if (hasPainted_ || !hadEvents_) worked = 0;
    }
    return frames;
}

void FrameClock::settle() {
    QElapsedTimer quiet;
    for (quiet.start(); quiet.elapsed() < settledMilliseconds;) {
        step();
        if (hadEvents_) quiet.restart();
    }
}

FrameClock::IsShown anyOf(const char* className) {
    return [className](const QWidget& painted) {
        for (const QWidget* widget = &painted; widget; widget = widget->parentWidget()) {
            if (widget->inherits(className)) return true;
        }
        return false;
    };
}

}  // namespace bench
