#include "benchmarks/FirstFrame.h"

#include <QCoreApplication>
#include <QEvent>
#include <chrono>
#include <cstdlib>
#include <iostream>

#include "benchmarks/Memory.h"

namespace bench {

FirstFrame::FirstFrame(const char* className, const char* beginning)
    : className_(className), beginning_(std::strtod(beginning, nullptr) / 1e9) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool FirstFrame::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Paint && !isPainted_ && watched->inherits(className_)) {
        isPainted_ = true;
        // The frame is complete when the event that paints all of it has been dealt with.
        QMetaObject::invokeMethod(this, &FirstFrame::report, Qt::QueuedConnection);
    }
    return false;
}

void FirstFrame::report() const {
    const std::chrono::duration<double> now = std::chrono::steady_clock::now().time_since_epoch();
    std::cout << "time " << now.count() - beginning_ << "\nresident " << residentMemory() << std::endl;
    std::_Exit(EXIT_SUCCESS);
}

}  // namespace bench
