#pragma once

#include <QObject>
#include <atomic>
#include <thread>

namespace bench {

// Asks the main thread from another one, over and over, whether it is there, and keeps how long the longest answer
// took. Lives on the main thread, whose events have to be dealt with for it to answer.
class Watchdog : public QObject {
public:
    Watchdog();
    ~Watchdog() override;

    // Seconds.
    double longestAbsence() const { return longest_; }

private:
    void watch(const std::stop_token& stop);

    std::atomic<double> longest_ = 0;
    std::atomic<bool> hasAnswered_ = false;
    std::jthread thread_;  // last, so that it ends first
};

}  // namespace bench
