#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace faults {

// What goes wrong at one of the system calls on files.
enum class Effect {
    nothing,
    fails,         // this call fails, without effect
    failsFromNow,  // so do all that follow
    isShort,       // reading, writing: half of it is done
    ends,          // as if the process ended there: a call that writes does half of it, none that follow has an effect
};

struct Fault {
    Effect effect = Effect::nothing;
    int error = 0;  // errno where a call fails
};

// From now on calls on files are counted, and the fault waits for the one with this number, the first being 1. A
// program that links this file makes its calls on files through it, those of its libraries included; while nothing is
// armed they pass, except that nothing is ever brought to the disk: a process that ends loses nothing by that.
// With `refusesLinks` the system gives no file a second name, as it does with other people's.
void arm(Fault fault, int atCall, bool refusesLinks = false);

struct Seen {
    int calls = 0;
    long faultAt = 0;  // the number that the system has for the call that failed or was cut short; 0: none
};
Seen disarm();

// Meets each fault at each call of what `change` does, which gets both. Returns how many there were.
inline int meetAll(const std::vector<Fault>& faults, const std::function<Seen(Fault, int atCall)>& change) {
    int points = 0;
    for (const Fault& fault : faults) {
        Seen seen;
        for (int call = 1; (call == 1 || seen.calls >= call - 1) && !testing::Test::HasFailure(); ++call) {
            SCOPED_TRACE(testing::Message() << "effect " << int(fault.effect) << ' ' << fault.error << " at " << call);
            seen = change(fault, call);
            points += seen.faultAt != 0;
        }
    }
    return points;
}

}  // namespace faults
