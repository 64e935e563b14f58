#include "app/Termination.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <array>
#include <csignal>

namespace app {

namespace {

// A signal handler may do next to nothing: it writes a byte that the event loop then reads.
int wakeUp = -1;

void onSignal(int) {
    const char byte = 0;
    [[maybe_unused]] const auto written = write(wakeUp, &byte, 1);
}

}  // namespace

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
