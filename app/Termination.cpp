#include "app/Termination.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QBasicTimer>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <cstdlib>
#include <utility>

namespace app {

namespace {

// Async-signal-safe: the handler writes a byte that wakes the event loop.
int wakeUp = -1;

void onSignal(int) {
    const char byte = 0;
    [[maybe_unused]] const auto written = write(wakeUp, &byte, 1);
}

// Global, since atexit() passes no context.
std::function<void()> toCallAtEnd;

void callOnce() {
    if (const auto end = std::exchange(toCallAtEnd, nullptr)) end();
}

}  // namespace

void callAtEnd(std::function<void()> end) {
    toCallAtEnd = std::move(end);
    QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, callOnce);
    // exit() destroys Qt's global tables in reverse order of creation. QtDBus needs the table of timers, so a timer is
    // started here: its table is then destroyed after callOnce() has run.
    QBasicTimer first;
    first.start(0, QCoreApplication::instance());
    std::atexit(callOnce);
}

void quitOnTerminationSignals() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()) != 0) return;
    wakeUp = ends[0];
    auto* notifier = new QSocketNotifier(ends[1], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, QCoreApplication::instance(), &QCoreApplication::quit);

    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaction(signal, &action, nullptr);
}

}  // namespace app
