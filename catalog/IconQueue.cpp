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
    std::mutex lock{};  // guards the two below; held for queue operations only, never across a catalog call
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
    } catch (const std::system_error&) {  // no more threads to be had: the rows keep their placeholders
        shared_->drop();
        shared_->loading = false;
    }
}

bool IconQueue::isLoading() const {
    const std::lock_guard guard(shared_->lock);
    return shared_->loading;
}

void IconQueue::Shared::drop() {
    const std::lock_guard guard(lock);
    iconsToLoad.clear();
}

// That the queue is empty and that loading ends is one step under the lock: a request made meanwhile is either seen
// here or starts a new thread.
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
