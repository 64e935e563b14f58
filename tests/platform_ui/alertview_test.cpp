#include "platform/ui/alert/AlertView.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include "platform/ui/accessibility/Accessibility.h"
#include "platform_ui/InstantClock.h"

namespace {

using platform::AlertView;

QString text(const char* latin) {
    return QString::fromLatin1(latin);
}

struct Delegate : platform::AlertViewDelegate {
    void willDismissWithButtonIndex(AlertView& alert, int index) override {
        will.push_back(index);
        shownAtWill = AlertView::shownIn(&alert).contains(&alert);
        if (auto* field = alert.findChild<QLineEdit*>()) {
            typed = field->text();
            EXPECT_FALSE(field->hasFocus() && index != 0);
        }
    }
    void didDismissWithButtonIndex(AlertView& alert, int index) override {
        did.push_back(index);
        EXPECT_FALSE(AlertView::shownIn(&alert).contains(&alert));
    }
    void forget() {
        will.clear();
        did.clear();
        typed.clear();
    }
    std::vector<int> will, did;
    QString typed;
    bool shownAtWill = false;
};

class AlertViewTest : public testing::Test {
protected:
    void SetUp() override {
        platform::installAccessibility();
        window.resize(320, 460);
        below = new QPushButton(&window);
        below->setGeometry(0, 0, 320, 460);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        below->setFocus();
    }

    AlertView* make(const QStringList& buttons, const QString& title = text("Title"), const QString& message = {}) {
        return new AlertView(title, message, &delegate, buttons.front(), buttons.mid(1));
    }

    static QLineEdit* addField(AlertView* alert) {
        auto* field = new QLineEdit;
        alert->addSubview(new QWidget, {11, 80, 262, 31});
        alert->addSubview(field, {16, 84, 252, 25});
        return field;
    }

    QWidget window;
    QPushButton* below = nullptr;
    Delegate delegate;
};

TEST_F(AlertViewTest, IsAnsweredByKeyboard) {
    const InstantClock instant;
    struct Case {
        int buttons;
        bool hasField;
        std::vector<Qt::Key> keys;
        int answer;
    };
    const Case cases[] = {
        {1, false, {Qt::Key_Return}, 0},
        {1, false, {Qt::Key_Escape}, 0},
        {2, false, {Qt::Key_Return}, 0},
        {2, false, {Qt::Key_Tab, Qt::Key_Return}, 1},
        {2, false, {Qt::Key_Right, Qt::Key_Space}, 1},
        {2, false, {Qt::Key_Left, Qt::Key_Enter}, 1},
        {2, false, {Qt::Key_Tab, Qt::Key_Escape}, 0},
        {3, false, {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return}, 2},
        {3, false, {Qt::Key_Up, Qt::Key_Up, Qt::Key_Space}, 1},
        {3, false, {Qt::Key_Backtab, Qt::Key_Return}, 2},
        {2, true, {Qt::Key_A, Qt::Key_Return}, 1},
        {2, true, {Qt::Key_A, Qt::Key_Escape}, 0},
        {2, true, {Qt::Key_A, Qt::Key_Tab, Qt::Key_Return}, 0},
        {2, true, {Qt::Key_A, Qt::Key_Down, Qt::Key_Down, Qt::Key_Return}, 1},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(testing::Message() << "case " << &each - cases);
        delegate.forget();
        QPointer<AlertView> alert = make(QStringList({text("No"), text("Yes"), text("Else")}).mid(0, each.buttons));
        if (each.hasField) addField(alert);
        alert->show(&window);
        for (const Qt::Key key : each.keys) QTest::keyClick(window.windowHandle(), key);
        EXPECT_EQ(delegate.did, std::vector<int>{each.answer});
        EXPECT_EQ(delegate.will, delegate.did);
        EXPECT_EQ(delegate.typed, each.hasField ? text("a") : QString());
        EXPECT_TRUE(below->hasFocus());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_FALSE(alert);
    }
}

TEST_F(AlertViewTest, ClosesOnceAndTellsWhenItHasGone) {
    AlertView* alert = make({text("No"), text("Yes")});
    const QPointer<AlertView> alive = alert;
    alert->show(&window);
    QTest::mouseClick(alert->button(1), Qt::LeftButton);
    alert->dismissWithClickedButtonIndex(0);
    EXPECT_EQ(delegate.will, std::vector<int>{1});
    EXPECT_EQ(delegate.did, std::vector<int>{}) << "still fading";
    EXPECT_TRUE(delegate.shownAtWill);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !alive; }));
    EXPECT_EQ(delegate.did, std::vector<int>{1});
}

TEST_F(AlertViewTest, ClosesSilentlyWithoutItsDelegate) {
    const InstantClock instant;
    auto shortLived = std::make_unique<Delegate>();
    auto* alert = new AlertView(text("Title"), {}, shortLived.get(), text("OK"));
    alert->show(&window);
    shortLived.reset();
    QTest::keyClick(window.windowHandle(), Qt::Key_Return);
    EXPECT_TRUE(AlertView::shownIn(&window).isEmpty());
}

TEST_F(AlertViewTest, KeepsTouchesAndKeysFromWhatIsBelow) {
    const InstantClock instant;
    int touched = 0;
    QObject::connect(below, &QPushButton::clicked, &window, [&] { ++touched; });
    AlertView* alert = make({text("No"), text("Yes")});
    alert->show(&window);
    const QPoint beside(5, 5);
    const QPoint onThePanel = alert->mapTo(&window, QPoint(142, 10));
    for (const QPoint& place : {beside, onThePanel}) {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, place);
    }
    QTest::keyClick(window.windowHandle(), Qt::Key_F5);
    EXPECT_EQ(touched, 0);
    EXPECT_EQ(AlertView::shownIn(below).size(), 1);
    alert->dismissWithClickedButtonIndex(0);
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, beside);
    EXPECT_EQ(touched, 1);
}

TEST_F(AlertViewTest, StacksTheNewestOnTop) {
    const InstantClock instant;
    AlertView* older = make({text("No"), text("Yes")});
    older->show(&window);
    AlertView* newer = make({text("OK")});
    newer->show(&window);
    EXPECT_EQ(AlertView::shownIn(&window), QList<AlertView*>({older, newer}));
    EXPECT_TRUE(newer->button(0)->hasFocus());
    QTest::keyClick(window.windowHandle(), Qt::Key_Escape);
    EXPECT_EQ(AlertView::shownIn(&window), QList<AlertView*>{older});
    EXPECT_TRUE(older->button(0)->hasFocus());
    newer = make({text("OK")});
    newer->show(&window);
    older->dismissWithClickedButtonIndex(1);
    EXPECT_TRUE(newer->button(0)->hasFocus()) << "one that closes below takes no keyboard away";
    newer->dismissWithClickedButtonIndex(0);
    EXPECT_TRUE(below->hasFocus());
}

TEST_F(AlertViewTest, WaitsForAWindow) {
    const InstantClock instant;
    auto* screen = new QWidget;
    make({text("OK")})->show(screen);
    EXPECT_TRUE(AlertView::shownIn(screen).isEmpty());
    screen->setParent(&window);
    screen->show();
    ASSERT_EQ(AlertView::shownIn(&window).size(), 1);
    QTest::keyClick(window.windowHandle(), Qt::Key_Return);
    EXPECT_EQ(delegate.did, std::vector<int>{0});

    screen = new QWidget;
    const QPointer<AlertView> neverShown = make({text("OK")});
    neverShown->show(screen);
    delete screen;
    EXPECT_FALSE(neverShown);

    QWidget later;
    const QPointer<AlertView> answeredEarly = make({text("OK")});
    answeredEarly->show(&later);
    answeredEarly->dismissWithClickedButtonIndex(0);
    later.show();
    EXPECT_TRUE(AlertView::shownIn(&later).isEmpty());
    EXPECT_EQ(delegate.did.size(), 2u);
}

TEST_F(AlertViewTest, LeavesRoomForEverything) {
    const InstantClock instant;
    const QString sentence = text("Here you can manually enter hostnames or IPs, for example one of your own. ");
    struct Case {
        const char* name;
        QString title;
        QString message;
        bool hasField;
        QStringList buttons;
    };
    const Case cases[] = {
        {"two lines of title over a field",
         text("Create Global Rule: enter hostname/IP without www."),
         text("\n\n"),
         true,
         {text("Cancel"), text("OK")}},
        {"one line of title over a field", text("Rule"), text("\n\n"), true, {text("Cancel"), text("OK")}},
        {"help", text("Global Allow"), sentence.repeated(6), false, {text("Dismiss"), text("Hide Alert")}},
        {"three buttons",
         text("Import/Delete"),
         sentence.repeated(3),
         false,
         {text("Cancel"), text("Import"), text("Delete")}},
        {"a word wider than the panel",
         text("Import VxmSettings-2013-09-13_21-45-10_copied-from-the-other-phone.plist?"),
         {},
         false,
         {text("Cancel"), text("YES")}},
        {"too much", text("Title"), sentence.repeated(60), false, {text("OK")}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        AlertView* alert = make(each.buttons, each.title, each.message);
        const QLineEdit* field = each.hasField ? addField(alert) : nullptr;
        alert->show(&window);
        EXPECT_TRUE(window.rect().contains(QRect(alert->mapTo(&window, QPoint()), alert->size())));
        const QPushButton* first = alert->button(0);
        for (const QLabel* label : alert->findChildren<QLabel*>()) {
            EXPECT_GE(label->height(), label->heightForWidth(label->width()));
            if (!field) continue;
            const QRect text = label->geometry();
            EXPECT_TRUE(label->text().trimmed().isEmpty() || text.bottom() < 80) << "the title ends above the field";
        }
        if (field) {
            EXPECT_LE(111, first->y());
        }
        int lastBottom = -1;
        for (int index = 0; index < alert->numberOfButtons(); ++index) {
            const QPushButton* button = alert->button(index);
            EXPECT_TRUE(alert->rect().contains(button->geometry()));
            EXPECT_GE(button->height(), 32);
            const bool inARow = alert->numberOfButtons() == 2;
            EXPECT_TRUE(index == 0 || (inARow ? button->y() == first->y() : button->y() >= lastBottom));
            lastBottom = button->geometry().bottom();
        }
        alert->dismissWithClickedButtonIndex(0);
    }
}

TEST_F(AlertViewTest, ScrollsWhatIsTooLongAndStaysCentred) {
    const InstantClock instant;
    AlertView* alert = make({text("OK")}, text("Title"), text("A line of text.\n").repeated(80));
    alert->show(&window);
    QScrollBar* bar = nullptr;
    for (QScrollBar* each : alert->findChildren<QScrollBar*>()) bar = each->maximum() > 0 ? each : bar;
    ASSERT_TRUE(bar);
    QTest::keyClick(window.windowHandle(), Qt::Key_PageDown);
    EXPECT_GT(bar->value(), 0);
    const int paged = bar->value();
    QWidget* text = alert->childAt(142, 200);
    // A finger that came down before the alert did.
    QTest::mouseRelease(text, Qt::LeftButton, {}, text->mapFrom(alert, QPoint(142, 150)));
    EXPECT_EQ(bar->value(), paged);
    QTest::mousePress(text, Qt::LeftButton, {}, text->mapFrom(alert, QPoint(142, 200)));
    QTest::mouseMove(text, text->mapFrom(alert, QPoint(142, 150)));
    QTest::mouseRelease(text, Qt::LeftButton, {}, text->mapFrom(alert, QPoint(142, 150)));
    EXPECT_EQ(bar->value(), paged + 50);
    const int before = alert->height();
    window.resize(400, 700);
    QCoreApplication::processEvents();
    EXPECT_GT(alert->height(), before);
    const QPoint centre = alert->mapTo(&window, alert->rect().center());
    EXPECT_LE((centre - window.rect().center()).manhattanLength(), 2);
    alert->dismissWithClickedButtonIndex(0);
}

// Which of the colours the title is written in, by its reddest and its bluest point.
QChar inkOf(QPushButton& button) {
    const QImage picture = button.grab().toImage();
    int reddest = 0;
    int bluest = 0;
    for (int y = 2; y < picture.height(); ++y) {
        for (int x = 2; x < picture.width(); ++x) {
            const QColor at = picture.pixelColor(x, y);
            reddest = std::max(reddest, at.red() - at.blue());
            bluest = std::max(bluest, at.blue() - at.red());
        }
    }
    return reddest > 60 ? u'r' : bluest > 60 ? u'b' : u'-';
}

TEST_F(AlertViewTest, ButtonThatDestroysIsRedAndNeverTheOneThatMatters) {
    const InstantClock instant;
    const struct {
        int buttons;
        std::vector<int> destructive;
        const char* inks;  // red, blue, neither
    } cases[] = {{1, {}, "b"},    {2, {}, "-b"},  {3, {}, "--b"},     {3, {2}, "-br"},
                 {3, {1}, "-rb"}, {2, {1}, "-r"}, {3, {1, 2}, "-rr"}, {1, {0}, "r"}};
    for (const auto& [buttons, destructive, inks] : cases) {
        SCOPED_TRACE(inks);
        AlertView* alert = make(QStringList({text("Cancel"), text("Import"), text("Delete")}).mid(0, buttons));
        for (const int index : destructive) alert->setDestructive(index);
        alert->show(&window);
        window.setFocus();  // its frame is blue
        for (int index = 0; index < buttons; ++index) {
            EXPECT_EQ(inkOf(*alert->button(index)), QLatin1Char(inks[index])) << index;
            EXPECT_EQ(alert->button(index)->font().bold(), inks[index] == 'b') << index;
        }
        alert->dismissWithClickedButtonIndex(0);
    }
}

TEST_F(AlertViewTest, IsReadAloud) {
    const InstantClock instant;
    AlertView* alert = make({text("No"), text("Yes")}, text("Delete?"));
    alert->show(&window);
    const QAccessibleInterface* read = QAccessible::queryAccessibleInterface(alert);
    EXPECT_EQ(read->role(), QAccessible::AlertMessage);
    EXPECT_EQ(read->text(QAccessible::Name), text("Delete?"));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(alert->button(1))->text(QAccessible::Name), text("Yes"));
    alert->dismissWithClickedButtonIndex(0);
}

}  // namespace
