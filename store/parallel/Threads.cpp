#include "store/parallel/Threads.h"

#include <pthread.h>
#include <sched.h>

#include <atomic>
#include <memory>
#include <utility>

namespace store {

std::jthread startBeside(std::function<void()> work) {
    cpu_set_t all;
    if (sched_getaffinity(0, sizeof all, &all) != 0) return std::jthread(std::move(work));
    const auto isRunning = std::make_shared<std::atomic<bool>>(false);
    std::jthread thread([all, isRunning, work = std::move(work)] {
        isRunning->store(true);
        // Once it runs it may run anywhere: the calling thread may since have moved to this processor.
        sched_setaffinity(0, sizeof all, &all);
        work();
    });
    cpu_set_t others = all;
    if (const int own = sched_getcpu(); own >= 0) CPU_CLR(own, &others);
    if (CPU_COUNT(&others) > 0 && !isRunning->load())
        pthread_setaffinity_np(thread.native_handle(), sizeof others, &others);
    return thread;
}

}  // namespace store
