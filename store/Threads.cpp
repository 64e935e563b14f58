#include "store/Threads.h"

#include <pthread.h>
#include <sched.h>

#include <utility>

namespace store {

std::jthread startBeside(std::function<void()> work) {
    std::jthread thread(std::move(work));
    cpu_set_t processors;
    if (sched_getaffinity(0, sizeof processors, &processors) != 0) return thread;
    if (const int own = sched_getcpu(); own >= 0) CPU_CLR(own, &processors);
    if (CPU_COUNT(&processors) > 0) pthread_setaffinity_np(thread.native_handle(), sizeof processors, &processors);
    return thread;
}

}  // namespace store
