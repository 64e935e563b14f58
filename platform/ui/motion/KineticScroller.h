#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>
#include <deque>

class QScrollBar;

namespace platform {

// Kinetic scrolling: after release the scroll bar continues at the finger's speed, decaying exponentially, until the
// speed is negligible, the bar reaches its end or other code moves the bar. The timer runs only during the motion.
class KineticScroller : public QObject {
    Q_OBJECT
public:
    explicit KineticScroller(QScrollBar* bar);

    // Press, move and release of a finger at y (points, downwards). begin() stops a running motion and returns whether
    // there was one. Without a preceding begin(), follow() and letGo() do nothing.
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
