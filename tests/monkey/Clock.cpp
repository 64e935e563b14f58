#include "monkey/Clock.h"

#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace {

constexpr long second = 1'000'000'000;  // nanoseconds
constexpr long firstDay = 1'362'000'000 * second;
constexpr long start = 1'000'000 * second;

thread_local bool isMonkeys = false;
long passed = 0;  // nanoseconds

}  // namespace

namespace monkey::Clock {

void advance(int milliseconds) {
    isMonkeys = true;
    passed += milliseconds * 1'000'000L;
}

}  // namespace monkey::Clock

// This takes the place of the system's in the whole process.
extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
    const bool isDate = clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE;
    const bool isSteady = clock == CLOCK_MONOTONIC || clock == CLOCK_MONOTONIC_COARSE || clock == CLOCK_MONOTONIC_RAW;
    if (!isMonkeys || !(isDate || isSteady)) return int(syscall(SYS_clock_gettime, clock, time));
    const long now = (isDate ? firstDay : start) + passed;
    *time = {now / second, now % second};
    return 0;
}
