#include "monkey/Clock.h"

#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

namespace {

constexpr long nanosecondsPerSecond = 1'000'000'000;
constexpr timespec firstDay{1'362'000'000, 0};
constexpr timespec start{1'000'000, 0};

thread_local bool isMonkeys = false;
long passed = 0;  // nanoseconds

timespec later(timespec time, long nanoseconds) {
    const long sum = time.tv_nsec + nanoseconds;
    return {time.tv_sec + sum / nanosecondsPerSecond, sum % nanosecondsPerSecond};
}

}  // namespace

namespace monkey::Clock {

void stop() {
    isMonkeys = true;
}

void advance(int milliseconds) {
    passed += milliseconds * 1'000'000L;
}

}  // namespace monkey::Clock

// These take the place of the system's in the whole process.
extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
    const bool isDate = clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE;
    const bool isSteady = clock == CLOCK_MONOTONIC || clock == CLOCK_MONOTONIC_COARSE || clock == CLOCK_MONOTONIC_RAW;
    if (!isMonkeys || !(isDate || isSteady)) return int(syscall(SYS_clock_gettime, clock, time));
    *time = later(isDate ? firstDay : start, passed);
    return 0;
}

extern "C" int gettimeofday(timeval* time, void* /*zone*/) noexcept {
    timespec now{};
    if (const int failure = clock_gettime(CLOCK_REALTIME, &now); failure != 0) return failure;
    *time = {now.tv_sec, now.tv_nsec / 1000};
    return 0;
}

extern "C" time_t time(time_t* also) noexcept {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (also) *also = now.tv_sec;
    return now.tv_sec;
}
