#include "platform/ui/input/HeldPress.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMouseEvent>
#include <utility>

namespace platform::HeldPress {

namespace {

// Filters the remaining events of a press from all widgets and deletes itself at its release. QWindows still receive
// them: Qt tracks the state of the mouse buttons there.
class RestOfPress : public QObject {
public:
    RestOfPress() : QObject(qApp) { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (!watched->isWidgetType()) return false;
        switch (event->type()) {
            case QEvent::MouseMove:
                return static_cast<QMouseEvent*>(event)->buttons().testFlag(Qt::LeftButton);
            case QEvent::MouseButtonRelease:
                if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) return false;
                end();
                return true;
            case QEvent::MouseButtonPress:  // the previous release was lost
                if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) end();
                return false;
            default:
                return false;
        }
    }

private:
    void end() {
        qApp->removeEventFilter(this);
        deleteLater();
    }
};

void letGo(const QWidget& within) {
    for (QWidget* widget : within.findChildren<QWidget*>()) {
        if (auto* button = qobject_cast<QAbstractButton*>(widget)) button->setDown(false);
        QEvent ungrab(QEvent::UngrabMouse);
        QCoreApplication::sendEvent(widget, &ungrab);
    }
}

}  // namespace

void cancel(const QWidget& within) {
    if (!QGuiApplication::mouseButtons().testFlag(Qt::LeftButton)) return;
    new RestOfPress;
    letGo(within);
}

Watch::Watch() {
    qApp->installEventFilter(this);
}

bool Watch::eventFilter(QObject* watched, QEvent* event) {
    if (!watched->isWindowType()) return false;
    const bool begins = event->type() == QEvent::MouseButtonPress;
    if (!begins && event->type() != QEvent::MouseButtonRelease) return false;
    if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) return false;
    if (std::exchange(isHeld_, begins) && begins)
        for (const QWidget* window : QApplication::topLevelWidgets()) letGo(*window);
    return false;
}

}  // namespace platform::HeldPress
