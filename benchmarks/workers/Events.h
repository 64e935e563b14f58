#pragma once

#include <QPoint>

class QChar;
class QWidget;

namespace bench {

// What a person's finger, wheel and keyboard send to the widget below or in focus. Points of the widget.
void press(QWidget& widget, QPoint point);
void moveTo(QWidget& widget, QPoint point);
void release(QWidget& widget, QPoint point);
void tap(QWidget& widget, QPoint point);
void tap(QWidget& widget);
// Up is positive, as a wheel's notch away from the person.
void turnWheel(QWidget& widget, int notches);
void type(QWidget& widget, QChar character);
void pressKey(QWidget& widget, int key);

}  // namespace bench
