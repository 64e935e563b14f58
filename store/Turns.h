#pragma once

#include <atomic>
#include <cstddef>

namespace store {

// Lets threads that work at the same time do a part of it one after the other, in an agreed order: turns are numbered
// from 0, and each is somebody's. What was done in earlier turns has happened for whoever has the turn. Thread-safe.
class Turns {
public:
    // Waits until all earlier turns are over.
    void await(std::size_t turn) const {
        for (std::size_t now = now_.load(); now != turn; now = now_.load()) now_.wait(now);
    }
    // Ends the turn that the caller has.
    void pass() {
        ++now_;
        now_.notify_all();
    }

private:
    std::atomic<std::size_t> now_ = 0;
};

}  // namespace store
