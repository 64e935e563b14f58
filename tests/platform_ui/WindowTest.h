#pragma once

#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>

#include "platform/ui/motion/AnimationClock.h"

// A window in front of all others, with a finger and keys. Animations are instant, unless a test says otherwise.
struct WindowTest : testing::Test {
    WindowTest() { platform::AnimationClock::setInstant(true); }
    ~WindowTest() override { platform::AnimationClock::setInstant(false); }

    void bringToFront(QWidget& shown) {
        front = &shown;
        shown.show();
        QApplication::setActiveWindow(&shown);
        EXPECT_TRUE(QTest::qWaitForWindowActive(&shown));
    }

    void press(QPoint at) const { QTest::mousePress(front->windowHandle(), Qt::LeftButton, {}, at); }
    void moveTo(QPoint at) const { QTest::mouseMove(front->windowHandle(), at); }
    void release(QPoint at) const { QTest::mouseRelease(front->windowHandle(), Qt::LeftButton, {}, at); }
    void tap(QPoint at) const {
        press(at);
        release(at);
    }
    void drag(QPoint from, QPoint way) const {
        press(from);
        for (int step = 1; step <= 8; ++step) moveTo(from + way * step / 8);
        if (std::abs(way.y()) > std::abs(way.x())) QTest::qWait(120);  // however slow the machine: no fling
        release(from + way);
    }
    // Keys by their names, such as "Tab Alt+Left", to the window, as the system does.
    void keys(const QString& names) const {
        for (const QString& name : names.split(u' ')) {
            const QKeyCombination combination = QKeySequence(name)[0];
            QTest::keyClick(front->windowHandle(), combination.key(), combination.keyboardModifiers());
        }
    }

    // As a screen reader has it.
    static QAccessibleInterface* read(QObject* object) { return QAccessible::queryAccessibleInterface(object); }

    QWidget* front = nullptr;
};
