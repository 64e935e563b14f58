#include "platform/ui/navigation/NavigationController.h"

#include "platform/ui/accessibility/Accessibility.h"
#include "platform/ui/alert/AlertView.h"
#include "platform/ui/controls/ImageButton.h"
#include "platform/ui/navigation/ViewController.h"
#include "platform_ui/WindowTest.h"

namespace {

using namespace Qt::StringLiterals;
using namespace platform;

// Writes down what it hears, and has something to type in, something to press and something that takes the keyboard.
class Screen : public ViewController {
public:
    Screen(const QString& name, QStringList& log) : name_(name), log_(log) {}

    QLineEdit* field = nullptr;
    ImageButton* button = nullptr;
    QWidget* list = nullptr;

protected:
    void loadView() override {
        setView(new QWidget);
        field = new QLineEdit(view());
        connect(field, &QLineEdit::editingFinished, this, [this] { note("edited"); });
        button = new ImageButton(view());
        button->setGeometry(0, 50, 200, 40);
        connect(button, &ImageButton::clicked, this, [this] { note("pressed"); });
        list = new QWidget(view());
        list->setFocusPolicy(Qt::StrongFocus);
    }
    void viewDidLoad() override { note("loaded"); }
    void viewWillAppear(bool) override { note("will appear"); }
    void viewDidAppear(bool) override { note("did appear"); }
    void viewWillDisappear(bool) override {
        note("will disappear");
        EXPECT_FALSE(field->hasFocus());
    }

private:
    void note(const char* what) { log_.append(name_ + u' ' + QLatin1String(what)); }

    QString name_;
    QStringList& log_;
};

struct NavigationControllerTest : WindowTest {
    NavigationControllerTest() : navigation(adopted(u"root"_s)), root(current) {
        installAccessibility();
        navigation.resize(320, 460);
        bringToFront(navigation);
    }

    std::unique_ptr<Screen> adopted(const QString& name = u"next"_s) {
        auto screen = std::make_unique<Screen>(name, log);
        current = screen.get();
        made.append(current);
        return screen;
    }
    // Some of push, present, pop, dismiss; back is the key, alert one over the window.
    Screen* run(const QString& acts) {
        for (const QString& act : acts.split(u' ')) {
            ViewController& seen = *navigation.visibleViewController();
            if (act == u"push") navigation.pushViewController(adopted(), true);
            if (act == u"present") seen.presentViewController(adopted(), true);
            if (act == u"pop") navigation.popViewController(true);
            if (act == u"dismiss") seen.dismissViewController(true);
            if (act == u"back") keys(u"Back"_s);
            if (act == u"alert") ask(&navigation);
        }
        return current;
    }
    static AlertView* ask(QWidget* where) {
        auto* alert = new AlertView(u"Sure?"_s, QString(), nullptr, u"OK"_s);
        alert->show(where);
        return alert;
    }
    // What the screens have heard since the last call.
    std::string heard() { return std::exchange(log, {}).join(u", ").toStdString(); }
    bool fillsTheWindow(ViewController* screen) const {
        return screen->view()->isVisible() && screen->view()->mapTo(&navigation, QPoint()) == QPoint() &&
               screen->view()->size() == navigation.size();
    }

    const QPoint onButton{100, 70};
    QStringList log;
    QList<QPointer<Screen>> made;
    Screen* current = nullptr;
    NavigationController navigation;
    Screen* root;
};

TEST_F(NavigationControllerTest, TellsScreensInOrderWhatHappensToThem) {
    EXPECT_EQ(heard(), "root loaded, root will appear, root did appear");
    navigation.hide();
    bringToFront(navigation);
    EXPECT_EQ(heard(), "") << "only the first appearance of the window is one of the screen";
    for (const auto& [come, go] : {std::pair(u"push"_s, u"pop"_s), std::pair(u"present"_s, u"dismiss"_s)}) {
        run(come);
        EXPECT_EQ(heard(), "next loaded, root will disappear, next will appear, next did appear");
        run(go);
        EXPECT_EQ(heard(), "next will disappear, root will appear, root did appear");
        run(u"pop"_s);
        EXPECT_EQ(heard(), "") << "the root stays";
    }
    root->presentViewController(adopted(), true);
    heard();
    root->presentViewController(adopted(), true);
    EXPECT_EQ(heard(), "") << "what is covered presents nothing";
    run(u"dismiss"_s);
    Screen* next = run(u"push"_s);
    next->field->setFocus();
    QTest::keyClicks(next->field, u"typed"_s);
    heard();
    run(u"pop"_s);
    EXPECT_EQ(heard(), "next edited, next will disappear, root will appear, root did appear");
}

TEST_F(NavigationControllerTest, TakesNoInputWhileScreensMove) {
    AnimationClock::setInstant(false);
    Screen* next = run(u"push"_s);
    heard();
    const auto pressByAssistance = [&] {
        for (const Screen* screen : {root, next})
            read(screen->button)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    };
    tap(onButton);
    keys(u"Esc"_s);
    pressByAssistance();
    EXPECT_EQ(heard(), "");
    EXPECT_TRUE(QTest::qWaitFor([this] { return log.contains(u"next did appear"_s); }));
    EXPECT_TRUE(fillsTheWindow(next));
    EXPECT_FALSE(root->view()->isVisible());
    tap(onButton);
    EXPECT_EQ(heard(), "next did appear, next pressed");
    pressByAssistance();
    EXPECT_EQ(heard(), "next pressed");
}

TEST_F(NavigationControllerTest, WhatIsHeldWhenAScreenGoesOrIsCoveredIsNotPressed) {
    for (const QString& act : {u"push"_s, u"present"_s, u"back"_s, u"alert"_s}) {
        SCOPED_TRACE(act.toStdString());
        const QPointer<ImageButton> held = run(u"push"_s)->button;
        press(onButton);
        ASSERT_TRUE(held->isDown());
        AnimationClock::setInstant(false);
        run(act);
        EXPECT_FALSE(held->isDown());
        moveTo(onButton + QPoint(1, 1));
        QTest::qWait(400);  // until whatever moves has come to rest
        moveTo(onButton);
        EXPECT_FALSE(held && held->isDown());
        release(onButton);
        AnimationClock::setInstant(true);
        for (auto* alert : AlertView::shownIn(&navigation)) alert->dismissWithClickedButtonIndex(0);
        while (navigation.visibleViewController() != root) run(u"pop"_s);
        tap(onButton);
        EXPECT_EQ(log.filter(u"pressed"_s), QStringList(u"root pressed"_s)) << "the next press is one again";
        heard();
    }
}

TEST_F(NavigationControllerTest, AlertWaitsForTheScreenThatAskedForItToComeToRest) {
    AnimationClock::setInstant(false);
    auto next = adopted();
    const AlertView* alert = ask(next->view());
    navigation.pushViewController(std::move(next), true);
    QApplication::processEvents();
    EXPECT_TRUE(AlertView::shownIn(&navigation).isEmpty());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !AlertView::shownIn(&navigation).isEmpty(); }));
    EXPECT_TRUE(fillsTheWindow(current));
    EXPECT_TRUE(alert->button(0)->hasFocus());
    keys(u"Return"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return current->list->hasFocus(); })) << "the keyboard goes to the new screen";
}

TEST_F(NavigationControllerTest, EndsARunningMotionWhenTheNextOneBegins) {
    AnimationClock::setInstant(false);
    const std::tuple<QString, int, int> cases[] = {
        {u"push push"_s, 3, 0},        {u"push pop"_s, 1, 1},        {u"push push pop pop"_s, 1, 2},
        {u"push pop push"_s, 2, 1},    {u"present dismiss"_s, 1, 1}, {u"present dismiss push"_s, 2, 1},
        {u"push present pop"_s, 1, 2},
    };
    for (const auto& [acts, count, destroyed] : cases) {
        SCOPED_TRACE(acts.toStdString());
        made.clear();
        heard();
        run(acts);
        EXPECT_TRUE(QTest::qWaitFor([this, gone = destroyed] {
            return made.count(nullptr) == gone && fillsTheWindow(navigation.topViewController()) &&
                   log.last().endsWith(u"did appear"_s);
        }));
        EXPECT_EQ(navigation.count(), count);
        EXPECT_EQ(log.filter(u"will appear"_s).size(), log.filter(u"did appear"_s).size());
        while (navigation.count() > 1) navigation.popViewController(false);
        QCoreApplication::processEvents();
    }
}

TEST_F(NavigationControllerTest, GoesBackByKey) {
    for (const QString& back : {u"Esc"_s, u"Back"_s, u"Alt+Left"_s}) {
        Screen* next = run(u"push"_s);
        run(u"present"_s);
        keys(u"Left"_s);
        EXPECT_EQ(navigation.visibleViewController(), current) << "a plain arrow is no way back";
        for (const Screen* screen : {next, root, root}) {
            keys(back);
            EXPECT_EQ(navigation.visibleViewController(), screen);
        }
    }
}

TEST_F(NavigationControllerTest, HandsTheKeyboardOn) {
    EXPECT_TRUE(root->list->hasFocus()) << "not the field: the person did not ask to type";
    root->button->setFocus();
    EXPECT_TRUE(run(u"push"_s)->list->hasFocus());
    run(u"pop"_s);
    EXPECT_TRUE(root->button->hasFocus()) << "back where it was";
    root->field->setFocus();
    run(u"present dismiss"_s);
    EXPECT_TRUE(root->list->hasFocus()) << "a field does not begin to be edited again";
}

TEST_F(NavigationControllerTest, OutlivesAScreenThatGoesByItsOwnButton) {
    const QPointer<Screen> next = run(u"push"_s);
    bool stillThere = false;
    QObject::connect(next->button, &ImageButton::clicked, &navigation, [&] {
        run(u"pop"_s);
        stillThere = next && next->button && !next->navigationController();
    });
    tap(onButton);
    EXPECT_TRUE(stillThere);
    QCoreApplication::processEvents();
    EXPECT_FALSE(next);
}

TEST_F(NavigationControllerTest, KeepsUpWithTheWindow) {
    AnimationClock::setInstant(false);
    Screen* next = run(u"push"_s);
    navigation.resize(480, 640);
    EXPECT_TRUE(QTest::qWaitFor([&] { return fillsTheWindow(next) && !root->view()->isVisible(); }));
    navigation.resize(320, 548);
    QCoreApplication::processEvents();
    EXPECT_TRUE(fillsTheWindow(next));
    navigation.popViewController(false);
    EXPECT_TRUE(fillsTheWindow(root));
}

TEST(NavigationController, CanGoInTheMiddleOfAMotion) {
    QStringList log;
    auto navigation = std::make_unique<NavigationController>(std::make_unique<Screen>(u"root"_s, log));
    navigation->pushViewController(std::make_unique<Screen>(u"next"_s, log), true);
    navigation->show();
    EXPECT_EQ(log.filter(u"root"_s), QStringList()) << "what is covered from the start never appears";
    const QPointer<ViewController> top = navigation->topViewController();
    navigation->popViewController(true);
    QCoreApplication::processEvents();
    navigation.reset();
    EXPECT_FALSE(top);
}

}  // namespace
