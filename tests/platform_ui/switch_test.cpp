#include "platform/ui/controls/Switch.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>

#include "platform/ui/accessibility/Accessibility.h"
#include "platform/ui/input/HeldPress.h"
#include "platform_ui/InstantClock.h"

namespace {

using platform::Switch;

class SwitchTest : public testing::Test {
protected:
    SwitchTest() : toggle(new Switch(&window)) {
        platform::installAccessibility();
        window.resize(200, 100);
        toggle->setGeometry(50, 30, 51, 31);
        QObject::connect(toggle, &Switch::valueChanged, &window, [this](Switch* sender) {
            EXPECT_EQ(sender, toggle);
            told.push_back(sender->isOn());
        });
        window.show();
    }

    InstantClock instant;
    QWidget window;
    Switch* toggle;
    std::vector<bool> told;
};

TEST_F(SwitchTest, ComesUpWhenAPressWithoutAnEndIsFollowedByAnother) {
    const platform::HeldPress::Watch watch;
    Switch other(&window);
    other.move(120, 60);
    other.show();
    const auto press = [this](const Switch& at) {
        QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, at.geometry().center());
    };
    press(*toggle);
    ASSERT_TRUE(toggle->isDown());
    press(other);
    EXPECT_FALSE(toggle->isDown());
    EXPECT_TRUE(other.isDown());
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, other.geometry().center());
    EXPECT_TRUE(other.isOn());
    EXPECT_TRUE(told.empty());
}

TEST_F(SwitchTest, AnswersToTheFinger) {
    struct Case {
        const char* name;
        bool before;
        std::vector<QPoint> path;  // pressed at the first, released at the last
        bool after;
    };
    const Case cases[] = {
        {"tap", false, {{40, 15}}, true},
        {"tap when on", true, {{10, 15}}, false},
        {"a trembling tap", false, {{20, 15}, {22, 14}, {21, 15}}, true},
        {"drag on", false, {{10, 15}, {25, 15}, {45, 15}}, true},
        {"drag off, beyond the edge", true, {{40, 15}, {0, 15}, {-60, 15}}, false},
        {"drag on again to where it is", true, {{40, 15}, {48, 15}}, true},
        {"drag there and back", false, {{10, 15}, {45, 15}, {11, 15}}, false},
        {"drag less than half", false, {{10, 15}, {19, 15}}, false},
        {"pressed, let go outside", false, {{25, 15}, {25, 90}}, false},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        toggle->setOn(each.before, false);
        told.clear();
        QTest::mousePress(toggle, Qt::LeftButton, {}, each.path.front());
        for (const QPoint& place : each.path) {
            QMouseEvent move(QEvent::MouseMove, place, toggle->mapToGlobal(place), Qt::NoButton, Qt::LeftButton, {});
            QCoreApplication::sendEvent(toggle, &move);
        }
        EXPECT_EQ(toggle->isOn(), each.before) << "nothing is decided before the finger leaves";
        QTest::mouseRelease(toggle, Qt::LeftButton, {}, each.path.back());
        EXPECT_EQ(toggle->isOn(), each.after);
        EXPECT_EQ(told, each.after == each.before ? std::vector<bool>{} : std::vector<bool>{each.after});
    }
}

TEST_F(SwitchTest, HeldSwitchIsAsBeforeWhenThePressIsCancelled) {
    const QPoint place = toggle->pos();
    const auto look = [this] { return toggle->grab().toImage(); };
    const QImage atRest = look();
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, place + QPoint(10, 15));
    QTest::mouseMove(window.windowHandle(), place + QPoint(45, 15));
    EXPECT_NE(look(), atRest);
    platform::HeldPress::cancel(window);
    EXPECT_EQ(look(), atRest);
    QTest::mouseMove(window.windowHandle(), place + QPoint(48, 15));
    EXPECT_EQ(look(), atRest);
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, place + QPoint(48, 15));
    EXPECT_EQ(told, std::vector<bool>());
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, place + QPoint(40, 15));
    EXPECT_EQ(told, std::vector<bool>{true});
}

TEST_F(SwitchTest, AnswersToTheKeyboardAndToAssistance) {
    toggle->setFocus(Qt::TabFocusReason);
    bool expected = false;
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(toggle, key);
        expected = !expected;
        EXPECT_EQ(toggle->isOn(), expected);
        QKeyEvent held(QEvent::KeyPress, key, {}, {}, true);
        QCoreApplication::sendEvent(toggle, &held);
        EXPECT_EQ(toggle->isOn(), expected) << "a key that is held down";
    }
    QAccessibleInterface* read = QAccessible::queryAccessibleInterface(toggle);
    EXPECT_EQ(read->role(), QAccessible::CheckBox);
    EXPECT_TRUE(read->state().checked);
    read->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(read->state().checked);
    EXPECT_EQ(told.size(), 4u);
    toggle->setEnabled(false);
    QTest::mouseClick(toggle, Qt::LeftButton);
    read->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(told.size(), 4u);
}

TEST_F(SwitchTest, SaysNothingOfWhatTheProgramDoes) {
    platform::AnimationClock::setInstant(false);
    const QImage off = toggle->grab().toImage();
    toggle->setOn(true, true);
    toggle->setOn(false, false);
    EXPECT_TRUE(QTest::qWaitFor([this] { return toggle->children().isEmpty(); })) << "an animation goes on for ever";
    EXPECT_EQ(toggle->grab().toImage(), off) << "an animation moves the knob although another has replaced it";
    toggle->setOn(true, true);
    EXPECT_TRUE(toggle->isOn());
    EXPECT_TRUE(told.empty());
}

TEST_F(SwitchTest, MayGoInItsOwnSignal) {
    const QPointer<Switch> alive = toggle;
    QObject::connect(toggle, &Switch::valueChanged, &window, [this] { delete toggle; });
    QTest::mouseClick(toggle, Qt::LeftButton);
    EXPECT_FALSE(alive);
}

}  // namespace
