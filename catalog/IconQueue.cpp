#include "catalog/IconQueue.h"

#include <QImage>
#include <system_error>
#include <utility>

#include "catalog/VxmAppList.h"
#include "platform/system/ApplicationList.h"

namespace catalog {

IconQueue::IconQueue(platform::ApplicationList& list) : list_(list) {
    whenIdle_.setSingleShot(true);
    whenIdle_.callOnTimeout([this] { startThread(); });
}

IconQueue::~IconQueue() {
    {
        const std::lock_guard guard(lock_);
        iconsToLoad_.clear();
    }
    if (thread_.joinable()) thread_.join();
}

void IconQueue::request(const QString& identifier) {
    if (list_.iconFailed(iconSize, identifier)) return;
    {
        const std::lock_guard guard(lock_);
        iconsToLoad_.push_front(identifier);
        if (std::exchange(loading_, true)) return;
    }
    whenIdle_.start(0);
}

void IconQueue::startThread() {
    if (thread_.joinable()) thread_.join();  // has found the queue empty: is at its end
    try {
        thread_ = std::thread(&IconQueue::loadIconsFromBackground, this);
    } catch (const std::system_error&) {  // no more threads to be had: the rows keep their placeholders
        const std::lock_guard guard(lock_);
        iconsToLoad_.clear();
        loading_ = false;
    }
}

bool IconQueue::isLoading() const {
    const std::lock_guard guard(lock_);
    return loading_;
}

// That the queue is empty and that loading ends is one step under the lock: a request made meanwhile is either seen
// here or starts a new thread.
void IconQueue::loadIconsFromBackground() {
    std::unique_lock guard(lock_);
    while (!iconsToLoad_.empty()) {
        const QString identifier = std::move(iconsToLoad_.front());
        iconsToLoad_.pop_front();
        guard.unlock();
        list_.copyIconOfSize(iconSize, identifier);
        guard.lock();
    }
    loading_ = false;
}

}  // namespace catalog
