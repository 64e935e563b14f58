#pragma once

#include <QObject>
#include <functional>
#include <vector>

class QWidget;

namespace bench {

// Lets the app's events happen and takes the time of it. Made after the application object; one at a time.
class FrameClock : public QObject {
public:
    FrameClock();

    using IsShown = std::function<bool(const QWidget& painted)>;

    // Seconds from the event until a frame is complete in which such a widget has been painted.
    double untilPainted(const IsShown& isShown, const std::function<void()>& event);
    // Seconds from the event until something is so.
    double until(const std::function<bool()>& isDone, const std::function<void()>& event);
    // Seconds of work that went into each frame, from the first event that leads to it until it is painted, while
    // events come by themselves.
    std::vector<double> framesUntil(const std::function<bool()>& isDone);
    // Until nothing has happened for a moment.
    void settle();
    // What happens to this object counts as nothing.
    void disregard(const QObject& object) { disregarded_ = &object; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Deals with what events there are; seconds.
    double step();

    IsShown isShown_;
    const QObject* disregarded_ = nullptr;
    bool hadEvents_ = false;
    bool hasPainted_ = false;
    bool hasShown_ = false;
};

// Widgets of a class, or inside of one.
FrameClock::IsShown anyOf(const char* className);

}  // namespace bench
