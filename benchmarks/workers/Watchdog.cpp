#include "benchmarks/workers/Watchdog.h"

#include <algorithm>
#include <chrono>

namespace bench {

namespace {

constexpr auto rest = std::chrono::milliseconds(1);

}  // namespace

Watchdog::Watchdog() : thread_([this](const std::stop_token& stop) { watch(stop); }) {}

Watchdog::~Watchdog() = default;

void Watchdog::watch(const std::stop_token& stop) {
    using Clock = std::chrono::steady_clock;
    while (!stop.stop_requested()) {
        hasAnswered_ = false;
        const Clock::time_point asked = Clock::now();
        QMetaObject::invokeMethod(
            this, [this] { hasAnswered_ = true; }, Qt::QueuedConnection);
        while (!hasAnswered_ && !stop.stop_requested()) std::this_thread::sleep_for(rest);
        const std::chrono::duration<double> absence = Clock::now() - asked;
        longest_ = std::max(longest_.load(), absence.count());
    }
}

}  // namespace bench
