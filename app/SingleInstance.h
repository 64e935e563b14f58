#pragma once

#include <QByteArray>
#include <filesystem>
#include <functional>
#include <optional>

#include "store/files/Descriptor.h"

class QObject;

namespace app {

// The one process that runs the app on a device: screens keep what they read, so two would overwrite each other's
// changes. Whoever comes first locks the preferences folder itself (flock(2)), which leaves nothing behind and ends
// with the process; whoever comes second asks the first by a datagram to show its window, and ends.
//
// A process that cannot open or may not write to the folder changes nothing: it neither takes the lock nor heeds it.
// Needs no application object and takes tens of microseconds where no other process has the lock.
class SingleInstance {
public:
    // `root` is the root directory of the device. Returns at once for the first process and, usually, for the second.
    // Waits for a process that is starting or ending, three seconds at most; then prints one line on standard error.
    explicit SingleInstance(const std::filesystem::path& root);

    // What to exit with, without showing a window, because another process runs the app: 0 when that one shows its
    // window. Nothing for the first process.
    std::optional<int> exitStatus() const { return exitStatus_; }

    // Calls `show` when another process has been started, with the token by which a Wayland compositor recognizes its
    // user's request; empty elsewhere. From then until `owner` is destroyed the event loop answers those processes: on
    // the main thread, once.
    void answer(QObject& owner, std::function<void(const QByteArray& activationToken)> show) const;

private:
    store::Descriptor folder_;  // has the lock
    store::Descriptor socket_;
    std::optional<int> exitStatus_;
};

}  // namespace app
