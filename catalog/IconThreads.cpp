#include "catalog/IconThreads.h"

#include <atomic>
#include <utility>

namespace catalog {

struct IconThreads::Running {
    explicit Running(std::function<void()> work)
        : thread([this, work = std::move(work)]() mutable {
              std::exchange(work, nullptr)();
              hasEnded = true;
          }) {}

    std::atomic<bool> hasEnded = false;
    std::jthread thread;  // last: started after the other members are initialised, joined before they are destroyed
};

IconThreads::IconThreads() = default;

IconThreads::~IconThreads() = default;

void IconThreads::start(std::function<void()> work) {
    std::erase_if(threads_, [](const auto& running) { return running->hasEnded.load(); });
    threads_.push_back(std::make_unique<Running>(std::move(work)));
}

}  // namespace catalog
