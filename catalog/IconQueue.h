#pragma once

#include <QString>
#include <QTimer>
#include <memory>

namespace platform {
class ApplicationList;
}

namespace catalog {

class IconThreads;

// One screen's queue of icons to load. The newest request is loaded first, so that the rows a person looks at fill in
// before those scrolled past. The queue exists while there is something to load and with it one thread; the thread
// ends when the queue is empty. It starts when the main thread has nothing else to do: rows that have just come to be
// are painted first, and what paints them does not share the machine with what loads their icons. Destroying this
// object drops what is still queued and lets the thread go, which ends with the icon it is at. Requests are made on the
// main thread; the catalog announces loaded icons by ApplicationList::iconLoaded.
class IconQueue {
public:
    // `list` outlives `threads`, which outlives this object.
    IconQueue(platform::ApplicationList& list, IconThreads& threads);
    ~IconQueue();
    IconQueue(const IconQueue&) = delete;
    IconQueue& operator=(const IconQueue&) = delete;

    // Puts a request at the front and has the thread started when there is none. An icon that is known not to load is
    // not asked for again.
    void request(const QString& identifier);

    // Whether a thread is at work or about to be.
    bool isLoading() const;

private:
    struct Shared;

    void startThread();

    IconThreads& threads_;
    std::shared_ptr<Shared> shared_;  // with the thread
    QTimer whenIdle_;
};

}  // namespace catalog
