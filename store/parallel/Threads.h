#pragma once

#include <functional>
#include <thread>

namespace store {

// Starts a thread that works at the same time as the calling one. The system may put a new thread on the processor of
// the one that makes it, where it waits until that is interrupted: for milliseconds, which can be longer than all that
// it has to do, while another processor idles. So it is kept off that processor, where there is another.
//
// Throws std::system_error when there are no more threads to be had. work must not throw.
std::jthread startBeside(std::function<void()> work);

}  // namespace store
