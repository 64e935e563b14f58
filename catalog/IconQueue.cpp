#include "catalog/IconQueue.h"

#include <QImage>
#include <deque>
#include <mutex>
#include <system_error>
#include <utility>

#include "catalog/IconThreads.h"
#include "catalog/VxmAppList.h"
#include "platform/system/ApplicationList.h"

namespace catalog {

struct IconQueue::Shared {
    void drop();
    void loadIconsFromBackground();

    platform::ApplicationList& list;
    std::mutex lock{};  // guards the members below; never held during a catalog call
    std::deque<QString> iconsToLoad{};
    bool loading = false;
};

IconQueue::IconQueue(platform::ApplicationList& list, IconThreads& threads)
    : threads_(threads), shared_(new Shared{.list = list}) {
    whenIdle_.setSingleShot(true);
    whenIdle_.callOnTimeout([this] { startThread(); });
}

IconQueue::~IconQueue() {
    shared_->drop();
}

void IconQueue::request(const QString& identifier) {
    if (shared_->list.iconFailed(iconSize, identifier)) return;
    {
        const std::lock_guard guard(shared_->lock);
        shared_->iconsToLoad.push_front(identifier);
        if (std::exchange(shared_->loading, true)) return;
    }
    whenIdle_.start(0);
}

void IconQueue::startThread() {
    try {
        threads_.start([shared = shared_] { shared->loadIconsFromBackground(); });
    } catch (const std::system_error&) {  // the thread limit is reached: the rows keep their placeholders
        shared_->drop();
    }
}

bool IconQueue::isLoading() const {
    const std::lock_guard guard(shared_->lock);
    return shared_->loading;
}

// A running thread, if any, ends after its current icon.
void IconQueue::Shared::drop() {
    const std::lock_guard guard(lock);
    iconsToLoad.clear();
    loading = false;
}

// The test for an empty queue and the reset of `loading` are one critical section: a concurrent request is either
// processed here or schedules a new thread.
void IconQueue::Shared::loadIconsFromBackground() {
    std::unique_lock guard(lock);
    while (!iconsToLoad.empty()) {
        const QString identifier = std::move(iconsToLoad.front());
        iconsToLoad.pop_front();
        guard.unlock();
        list.copyIconOfSize(iconSize, identifier);
        guard.lock();
    }
    loading = false;
}

}  // namespace catalog
