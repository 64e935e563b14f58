#include "benchmarks/workers/Events.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

namespace bench {

namespace {

constexpr int notch = 120;

void mouse(QWidget& widget, QPoint point, QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons buttons) {
    QMouseEvent event(type, point, widget.mapToGlobal(QPointF(point)), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

void key(QWidget& widget, int key, const QString& text) {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier, text);
        QApplication::sendEvent(&widget, &event);
    }
}

}  // namespace

void press(QWidget& widget, QPoint point) {
    mouse(widget, point, QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
}

void moveTo(QWidget& widget, QPoint point) {
    mouse(widget, point, QEvent::MouseMove, Qt::NoButton, Qt::LeftButton);
}

void release(QWidget& widget, QPoint point) {
    mouse(widget, point, QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
}

void tap(QWidget& widget, QPoint point) {
    press(widget, point);
    release(widget, point);
}

void tap(QWidget& widget) {
    tap(widget, widget.rect().center());
}

void turnWheel(QWidget& widget, int notches) {
    const QPointF middle = widget.rect().center();
    QWheelEvent event(middle, widget.mapToGlobal(middle), {}, {0, notches * notch}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

void type(QWidget& widget, QChar character) {
    key(widget, character.toUpper().unicode(), character);
}

void pressKey(QWidget& widget, int code) {
    key(widget, code, code == Qt::Key_Return ? QStringLiteral("\r") : QString());
}

}  // namespace bench
