#pragma once

#include <QObject>

namespace bench {

// Ends the program as soon as a widget of a class has been painted for the first time, and says on standard output how
// many seconds after `beginning` that was and how much memory the program has taken by then.
class FirstFrame : public QObject {
public:
    // `beginning` in nanoseconds of the monotonic clock, as somebody else wrote them down.
    FirstFrame(const char* className, const char* beginning);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void report() const;

    const char* className_;
    double beginning_;
    bool isPainted_ = false;
};

}  // namespace bench
