#pragma once

#include <QPoint>
#include <QPointer>
#include <QWidget>
#include <functional>

#include "monkey/Random.h"

namespace monkey {

// What a person does to the window, with real events. The journal says of everything what it is.
class Fingers {
public:
    // `pass` lets milliseconds pass.
    Fingers(Random& random, std::function<void(int)> pass);

    // The window that they are on from now on.
    void use(QWidget* window);
    // Any one thing.
    void act();
    // Lets go of what is held, leaves menus, comes back from other windows.
    void letGo();

private:
    void tapAnywhere();
    void tapControl();
    void tapTwice();
    void answerAlert();
    void drag();
    void swipe();
    void hold();
    void turnWheel();
    void openMenu();
    void pressKey();
    void type();
    void paste();
    void compose();
    void resize();
    void goElsewhere();

    void tap(QPoint point);
    void drag(QPoint from, QPoint to, int steps);
    QWidget* anyControl();
    bool isSeen(const QWidget& control) const;
    QPoint middleOf(const QWidget& control) const;
    QPoint anyPoint();
    QPoint within(QPoint point) const;
    void press(QPoint point);
    void release(QPoint point);

    Random& random_;
    std::function<void(int)> pass_;
    QPointer<QWidget> window_;
    QWidget elsewhere_;
    bool isDown_ = false;
};

}  // namespace monkey
