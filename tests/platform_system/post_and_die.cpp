// Posts the notification that it is given when it is about to quit, and dies without a further step.
#include <signal.h>

#include <QCoreApplication>
#include <QTimer>
#include <cstdio>

#include "platform/system/SystemNotifyCenter.h"

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QObject::connect(&application, &QCoreApplication::aboutToQuit, [name = argv[1]] {
        platform::SystemNotifyCenter center;
        center.post(name);
        std::puts("posted");
        std::fflush(stdout);
        center.flush();
        ::raise(SIGKILL);
    });
    QTimer::singleShot(0, &application, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
