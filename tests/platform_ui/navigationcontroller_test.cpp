#include "platform/ui/navigation/NavigationController.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <functional>

#include "platform/ui/alert/AlertView.h"
#include "platform/ui/navigation/ViewController.h"
#include "platform_ui/InstantClock.h"

namespace {

using platform::NavigationController;
using platform::ViewController;

QString named(const char* text) {
    return QString::fromLatin1(text);
}

// Writes down what it hears, and has something to type in, something to press and something that takes the keyboard.
class Screen : public ViewController {
public:
    Screen(const char* name, QStringList& log) : name_(named(name)), log_(log) {}

    QLineEdit* field = nullptr;
    QPushButton* button = nullptr;
    QWidget* list = nullptr;
    std::function<void(QWidget*)> appearing;

protected:
    void loadView() override {
        auto* view = new QWidget;
        field = new QLineEdit(view);
        field->setGeometry(0, 0, 200, 30);
        connect(field, &QLineEdit::editingFinished, this, [this] { note("edited"); });
        button = new QPushButton(view);
        button->setFocusPolicy(Qt::TabFocus);
        button->setGeometry(0, 50, 200, 40);
        connect(button, &QPushButton::clicked, this, [this] { note("pressed"); });
        list = new QWidget(view);
        list->setFocusPolicy(Qt::StrongFocus);
        list->setGeometry(0, 100, 200, 200);
        setView(view);
    }
    void viewDidLoad() override { note("loaded"); }
    void viewWillAppear(bool) override {
        note("will appear");
        if (appearing) appearing(view());
    }
    void viewDidAppear(bool) override { note("did appear"); }
    void viewWillDisappear(bool) override {
        note("will disappear");
        EXPECT_FALSE(field->hasFocus());
    }

private:
    void note(const char* what) { log_.append(name_ + QLatin1Char(' ') + named(what)); }

    QString name_;
    QStringList& log_;
};

class NavigationControllerTest : public testing::Test {
protected:
    NavigationControllerTest() : navigation(adopted("root")) {
        root = current;
        navigation.resize(320, 460);
    }

    std::unique_ptr<Screen> adopted(const char* name) {
        auto screen = std::make_unique<Screen>(name, log);
        current = screen.get();
        return screen;
    }

    void show() {
        navigation.show();
        navigation.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&navigation));
    }

    Screen* push(const char* name, bool animated = true) {
        navigation.pushViewController(adopted(name), animated);
        return current;
    }

    Screen* present(const char* name) {
        navigation.visibleViewController()->presentViewController(adopted(name), true);
        return current;
    }

    void dismiss() { navigation.visibleViewController()->dismissViewController(true); }

    QStringList takeLog() { return std::exchange(log, {}); }

    bool fillsTheWindow(ViewController* screen) const {
        return screen->view()->isVisible() && screen->view()->mapTo(&navigation, QPoint()) == QPoint() &&
               screen->view()->size() == navigation.size();
    }

    QStringList log;
    Screen* current = nullptr;
    Screen* root = nullptr;
    NavigationController navigation;
};

TEST_F(NavigationControllerTest, TellsScreensInOrderWhatHappensToThem) {
    const InstantClock instant;
    show();
    EXPECT_EQ(takeLog(), QStringList({named("root loaded"), named("root will appear"), named("root did appear")}));
    navigation.hide();
    navigation.show();
    EXPECT_EQ(takeLog(), QStringList()) << "only the first appearance of the window is one of the screen";

    const QStringList coming{named("root will disappear"), named("next will appear"), named("next did appear")};
    const QStringList going{named("next will disappear"), named("root will appear"), named("root did appear")};
    push("next");
    EXPECT_EQ(takeLog(), QStringList(named("next loaded")) + coming);
    navigation.popViewController(true);
    EXPECT_EQ(takeLog(), going);
    present("next");
    EXPECT_EQ(takeLog(), QStringList(named("next loaded")) + coming);
    dismiss();
    EXPECT_EQ(takeLog(), going);
    navigation.popViewController(true);
    EXPECT_EQ(takeLog(), QStringList()) << "the root stays";
}

TEST_F(NavigationControllerTest, TakesNoInputWhileScreensMove) {
    show();
    Screen* next = push("next");
    takeLog();
    QTest::mouseClick(navigation.windowHandle(), Qt::LeftButton, {}, {100, 70});
    QTest::keyClick(navigation.windowHandle(), Qt::Key_Escape);
    EXPECT_EQ(takeLog(), QStringList());
    EXPECT_TRUE(QTest::qWaitFor([&] { return log.contains(named("next did appear")); }));
    EXPECT_TRUE(fillsTheWindow(next));
    EXPECT_FALSE(root->view()->isVisible());
    QTest::mouseClick(navigation.windowHandle(), Qt::LeftButton, {}, {100, 70});
    EXPECT_EQ(log.last(), named("next pressed"));
}

TEST_F(NavigationControllerTest, WhatIsHeldWhenAScreenGoesOrIsCoveredIsNotPressed) {
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"push", [&] { push("next"); }},
        {"present", [&] { present("next"); }},
        {"pop", [&] { QTest::keyClick(navigation.windowHandle(), Qt::Key_Back); }},
        {"alert",
         [&] { (new platform::AlertView(named("Sure?"), QString(), nullptr, named("OK")))->show(&navigation); }},
    };
    const QPoint onButton(100, 70);
    show();
    for (const auto& [name, act] : cases) {
        SCOPED_TRACE(name);
        const QPointer<QPushButton> held = push("held", false)->button;
        QTest::mousePress(navigation.windowHandle(), Qt::LeftButton, {}, onButton);
        ASSERT_TRUE(held->isDown());
        act();
        EXPECT_FALSE(held->isDown());
        QTest::mouseMove(navigation.windowHandle(), onButton + QPoint(1, 1));
        QTest::qWait(400);  // until whatever moves has come to rest
        QTest::mouseMove(navigation.windowHandle(), onButton);
        EXPECT_FALSE(held && held->isDown());
        QTest::mouseRelease(navigation.windowHandle(), Qt::LeftButton, {}, onButton);
        EXPECT_EQ(log.filter(named("pressed")), QStringList());
        {
            const InstantClock instant;
            for (auto* alert : platform::AlertView::shownIn(&navigation)) alert->dismissWithClickedButtonIndex(0);
            while (navigation.visibleViewController() != root) navigation.popViewController(false);
        }
        QTest::mouseClick(navigation.windowHandle(), Qt::LeftButton, {}, onButton);
        EXPECT_EQ(log.filter(named("pressed")), QStringList(named("root pressed"))) << "the next press is one again";
        takeLog();
    }
}

TEST_F(NavigationControllerTest, AlertWaitsForTheScreenThatAskedForItToComeToRest) {
    show();
    auto next = adopted("next");
    platform::AlertView* alert = nullptr;
    next->appearing = [&](QWidget* view) {
        alert = new platform::AlertView(named("Sure?"), QString(), nullptr, named("OK"));
        alert->show(view);
    };
    Screen* screen = current;
    navigation.pushViewController(std::move(next), true);
    QApplication::processEvents();
    EXPECT_TRUE(platform::AlertView::shownIn(&navigation).isEmpty());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !platform::AlertView::shownIn(&navigation).isEmpty(); }));
    EXPECT_TRUE(fillsTheWindow(screen));
    EXPECT_TRUE(alert->button(0)->hasFocus());
    alert->dismissWithClickedButtonIndex(0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return screen->list->hasFocus(); })) << "the keyboard goes to the new screen";
}

TEST_F(NavigationControllerTest, EndsARunningMotionWhenTheNextOneBegins) {
    struct Case {
        const char* name;
        std::function<void()> act;
        int count;
        std::size_t destroyed;  // of the screens "a" and "b"
    };
    std::vector<QPointer<Screen>> made;
    const auto pushed = [&](const char* name) { made.emplace_back(push(name)); };
    const Case cases[] = {
        {"push, push", [&] { pushed("a"), pushed("b"); }, 3, 0},
        {"push, pop", [&] { pushed("a"), navigation.popViewController(true); }, 1, 1},
        {"pop, pop",
         [&] { pushed("a"), pushed("b"), navigation.popViewController(true), navigation.popViewController(true); }, 1,
         2},
        {"pop, push", [&] { pushed("a"), navigation.popViewController(true), pushed("b"); }, 2, 1},
        {"present, dismiss", [&] { made.emplace_back(present("a")), dismiss(); }, 1, 1},
        {"dismiss, push", [&] { made.emplace_back(present("a")), dismiss(), pushed("b"); }, 2, 1},
        {"pop under what is presented",
         [&] { pushed("a"), made.emplace_back(present("b")), navigation.popViewController(true); }, 1, 2},
    };
    show();
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        made.clear();
        takeLog();
        each.act();
        const auto destroyed = [&] {
            return std::size_t(std::count_if(made.begin(), made.end(), [](const auto& screen) { return !screen; }));
        };
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return destroyed() == each.destroyed && fillsTheWindow(navigation.topViewController()) &&
                   log.last().endsWith(named("did appear"));
        }));
        EXPECT_EQ(navigation.count(), each.count);
        EXPECT_EQ(log.filter(named("will appear")).size(), log.filter(named("did appear")).size());
        while (navigation.count() > 1) navigation.popViewController(false);
        QCoreApplication::processEvents();
    }
}

TEST_F(NavigationControllerTest, PresentsOnlyOverTheScreenThatIsSeen) {
    const InstantClock instant;
    show();
    Screen* over = present("over");
    root->presentViewController(adopted("again"), true);
    EXPECT_EQ(navigation.visibleViewController(), over);
    EXPECT_EQ(root->presentedViewController(), over);
}

TEST_F(NavigationControllerTest, GoesBackByKey) {
    const InstantClock instant;
    show();
    const std::pair<Qt::Key, Qt::KeyboardModifiers> keys[] = {
        {Qt::Key_Escape, {}}, {Qt::Key_Back, {}}, {Qt::Key_Left, Qt::AltModifier}};
    for (const auto& [key, modifiers] : keys) {
        push("next");
        present("over");
        QTest::keyClick(navigation.windowHandle(), key, modifiers);
        EXPECT_EQ(navigation.visibleViewController(), navigation.topViewController());
        EXPECT_EQ(navigation.count(), 2);
        QTest::keyClick(navigation.windowHandle(), key, modifiers);
        EXPECT_EQ(navigation.count(), 1);
        QTest::keyClick(navigation.windowHandle(), key, modifiers);
        EXPECT_EQ(navigation.visibleViewController(), root);
    }
    push("next");
    QTest::keyClick(navigation.windowHandle(), Qt::Key_Left);
    EXPECT_EQ(navigation.count(), 2) << "a plain arrow is no way back";
}

TEST_F(NavigationControllerTest, EndsEditingBeforeAScreenGoes) {
    const InstantClock instant;
    show();
    Screen* next = push("next");
    next->field->setFocus();
    QTest::keyClicks(next->field, named("typed"));
    takeLog();
    navigation.popViewController(true);
    EXPECT_EQ(log.mid(0, 2), QStringList({named("next edited"), named("next will disappear")}));
}

TEST_F(NavigationControllerTest, HandsTheKeyboardOn) {
    const InstantClock instant;
    show();
    EXPECT_TRUE(root->list->hasFocus()) << "not the field: the person did not ask to type";
    root->button->setFocus();
    Screen* next = push("next");
    EXPECT_TRUE(next->list->hasFocus());
    navigation.popViewController(true);
    EXPECT_TRUE(root->button->hasFocus()) << "back where it was";
    root->field->setFocus();
    present("over");
    dismiss();
    EXPECT_TRUE(root->list->hasFocus()) << "a field does not begin to be edited again";
}

TEST_F(NavigationControllerTest, OutlivesAScreenThatGoesByItsOwnButton) {
    const InstantClock instant;
    show();
    const QPointer<Screen> next = push("next");
    bool stillThere = false;
    QObject::connect(next->button, &QPushButton::clicked, &navigation, [&] {
        navigation.popViewController(true);
        stillThere = next && next->button;
        EXPECT_EQ(next->navigationController(), nullptr);
    });
    QTest::mouseClick(next->button, Qt::LeftButton);
    EXPECT_TRUE(stillThere);
    QCoreApplication::processEvents();
    EXPECT_FALSE(next);
}

TEST_F(NavigationControllerTest, KeepsUpWithTheWindow) {
    show();
    Screen* next = push("next");
    navigation.resize(480, 640);
    EXPECT_TRUE(QTest::qWaitFor([&] { return fillsTheWindow(next) && !root->view()->isVisible(); }));
    navigation.resize(320, 548);
    QCoreApplication::processEvents();
    EXPECT_TRUE(fillsTheWindow(next));
    const InstantClock instant;
    navigation.popViewController(true);
    EXPECT_TRUE(fillsTheWindow(root));
}

TEST(NavigationController, CanGoInTheMiddleOfAMotion) {
    QStringList log;
    auto navigation = std::make_unique<NavigationController>(std::make_unique<Screen>("root", log));
    navigation->pushViewController(std::make_unique<Screen>("next", log), true);
    navigation->show();
    EXPECT_EQ(log.filter(named("root")), QStringList()) << "what is covered from the start never appears";
    const QPointer<ViewController> top = navigation->topViewController();
    navigation->popViewController(true);
    QCoreApplication::processEvents();
    navigation.reset();
    EXPECT_FALSE(top);
}

}  // namespace
