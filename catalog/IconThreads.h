#pragma once

#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace catalog {

// The threads that load icons. A large icon takes seconds, which nobody should wait for who only closes a screen: a
// screen lets its thread go, and whoever owns this object, which the catalog outlives, waits at the end of the app.
// Main thread.
class IconThreads {
public:
    IconThreads();
    // Waits for the threads that still work, however long they take: what they use is about to go.
    ~IconThreads();
    IconThreads(const IconThreads&) = delete;
    IconThreads& operator=(const IconThreads&) = delete;

    // Runs `work`, which must own what it uses or use what outlives this object, on a new thread. Throws
    // std::system_error when there are no more threads to be had.
    void start(std::function<void()> work);

private:
    struct Running;

    std::vector<std::unique_ptr<Running>> threads_;
};

}  // namespace catalog
