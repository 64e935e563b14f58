#pragma once

#include <QString>
#include <QTimer>
#include <deque>
#include <mutex>
#include <thread>

namespace platform {
class ApplicationList;
}

namespace catalog {

// One screen's queue of icons to load. The newest request is loaded first, so that the rows a person looks at fill in
// before those scrolled past. The queue exists while there is something to load and with it one thread; the thread
// ends when the queue is empty. It starts when the main thread has nothing else to do: rows that have just come to be
// are painted first, and what paints them does not share the machine with what loads their icons. Destroying this
// object drops what is still queued and joins the thread. Requests are made on the main thread; the catalog announces
// loaded icons by ApplicationList::iconLoaded.
class IconQueue {
public:
    // `list` outlives this object.
    explicit IconQueue(platform::ApplicationList& list);
    ~IconQueue();
    IconQueue(const IconQueue&) = delete;
    IconQueue& operator=(const IconQueue&) = delete;

    // Puts a request at the front and has the thread started when there is none. An icon that is known not to load is
    // not asked for again.
    void request(const QString& identifier);

    // Whether a thread is at work or about to be.
    bool isLoading() const;

private:
    void startThread();
    void loadIconsFromBackground();

    platform::ApplicationList& list_;
    mutable std::mutex lock_;  // guards the two below; held for queue operations only, never across a catalog call
    std::deque<QString> iconsToLoad_;
    bool loading_ = false;
    QTimer whenIdle_;
    std::thread thread_;
};

}  // namespace catalog
