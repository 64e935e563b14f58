#pragma once

#include <QString>
#include <QTimer>
#include <memory>

namespace platform {
class ApplicationList;
}

namespace catalog {

class IconThreads;

// One screen's queue of icons to load, last in, first out, so that visible rows are served before rows that were
// scrolled past. One thread works on the queue and ends when it is empty. It is started when the event loop is idle, so
// that new rows are painted first. The destructor clears the queue and does not wait: the thread ends after its current
// icon. Main thread; loaded icons are announced by ApplicationList::iconLoaded.
class IconQueue {
public:
    // `list` outlives `threads`, which outlives this object.
    IconQueue(platform::ApplicationList& list, IconThreads& threads);
    ~IconQueue();
    IconQueue(const IconQueue&) = delete;
    IconQueue& operator=(const IconQueue&) = delete;

    // Adds a request at the front and schedules the thread if none runs. Icons that failed before are ignored.
    void request(const QString& identifier);

    // Whether a thread is running or scheduled.
    bool isLoading() const;

private:
    struct Shared;

    void startThread();

    IconThreads& threads_;
    std::shared_ptr<Shared> shared_;  // with the thread, which may outlive this object
    QTimer whenIdle_;
};

}  // namespace catalog
