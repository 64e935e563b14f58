#pragma once

#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace catalog {

// Owns the threads that load icons. A large icon takes seconds; closing a screen must not wait for it, so screens
// release their threads here, and the end of the app joins them. The catalog outlives this object. Main thread.
class IconThreads {
public:
    IconThreads();
    // Joins all threads, without a time limit: the objects they use are destroyed next.
    ~IconThreads();
    IconThreads(const IconThreads&) = delete;
    IconThreads& operator=(const IconThreads&) = delete;

    // Runs `work` on a new thread. The objects it uses must be owned by it or outlive this object. Throws
    // std::system_error when no thread can be created.
    void start(std::function<void()> work);

private:
    struct Running;

    std::vector<std::unique_ptr<Running>> threads_;
};

}  // namespace catalog
