#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>
#include <deque>

class QScrollBar;

namespace platform {

// Goes on with a finger's speed when the finger lets go, slowing down exponentially, until it is slow or the scroll
// bar is at its end or something else moves the bar. The timer runs only while something moves.
class KineticScroller : public QObject {
    Q_OBJECT
public:
    explicit KineticScroller(QScrollBar* bar);

    // Follows a finger at y, in points that grow downwards; begin() stops a motion and returns whether there was one.
    // A finger that came down elsewhere is none of ours: without begin() the others do nothing.
    bool begin(int y);
    void follow(int y);
    void letGo();

    void stop();
    bool isMoving() const { return timer_.isActive(); }

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    struct Sample {
        qint64 milliseconds;
        int y;
    };

    double fingerSpeed() const;

    QScrollBar* bar_;
    QBasicTimer timer_;
    QElapsedTimer clock_;
    std::deque<Sample> samples_;  // of the finger, while there is one
    double speed_ = 0;            // points of content per second at the start of the motion
    double startValue_ = 0;
    int lastValue_ = 0;
};

}  // namespace platform
