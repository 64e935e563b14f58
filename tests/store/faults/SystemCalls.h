#pragma once

namespace faults {

// What goes wrong at one of the system calls on files.
enum class Effect {
    nothing,
    fails,         // this call fails, without effect
    failsFromNow,  // so do all that follow
    isShort,       // reading, writing: half of it is done
    kills,         // the process ends there; a call that writes has done half of it
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

}  // namespace faults
