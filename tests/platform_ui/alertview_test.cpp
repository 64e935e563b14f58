#include "platform/ui/alert/AlertView.h"

#include "platform_ui/WindowTest.h"

namespace {

using namespace Qt::StringLiterals;
using platform::AlertView;

struct AlertViewTest : WindowTest, platform::AlertViewDelegate {
    AlertViewTest() : below(new QPushButton(&window)) {
        window.resize(320, 460);
        below->resize(window.size());
        bringToFront(window);
        below->setFocus();
    }

    void willDismissWithButtonIndex(AlertView& alert, int index) override {
        shownAtWill = shown().contains(&alert);
        heard += u"will %1 "_s.arg(index);
        if (const auto* field = alert.findChild<QLineEdit*>()) {
            typed = field->text();
            EXPECT_FALSE(field->hasFocus() && index != 0);
        }
    }
    void didDismissWithButtonIndex(AlertView& alert, int index) override {
        heard += u"did %1 "_s.arg(index);
        EXPECT_FALSE(shown().contains(&alert));
    }

    AlertView* make(int buttons, const QString& title = u"Title"_s, const QString& message = {}) {
        return new AlertView(title, message, this, u"Cancel"_s,
                             QStringList{u"Import"_s, u"Delete"_s}.mid(0, buttons - 1));
    }
    AlertView* showNew(int buttons) {
        AlertView* alert = make(buttons);
        alert->show(&window);
        return alert;
    }
    static void addField(AlertView* alert) {
        alert->addSubview(new QWidget, {11, 80, 262, 31});
        alert->addSubview(new QLineEdit, {16, 84, 252, 25});
    }
    QList<AlertView*> shown() const { return AlertView::shownIn(&window); }

    QWidget window;
    QPushButton* below;
    QString heard;
    QString typed;
    bool shownAtWill = false;
};

TEST_F(AlertViewTest, IsAnsweredByKeyboard) {
    const std::tuple<int, bool, QString, int> cases[] = {
        {1, false, u"Return"_s, 0},      {1, false, u"Esc"_s, 0},
        {2, false, u"Return"_s, 0},      {2, false, u"Tab Return"_s, 1},
        {2, false, u"Right Space"_s, 1}, {2, false, u"Left Enter"_s, 1},
        {2, false, u"Tab Esc"_s, 0},     {3, false, u"Down Down Return"_s, 2},
        {3, false, u"Up Up Space"_s, 1}, {3, false, u"Backtab Return"_s, 2},
        {2, true, u"A Return"_s, 1},     {2, true, u"A Esc"_s, 0},
        {2, true, u"A Tab Return"_s, 0}, {2, true, u"A Down Down Return"_s, 1}};
    for (const auto& [buttons, hasField, pressed, answer] : cases) {
        SCOPED_TRACE(pressed.toStdString());
        heard.clear();
        typed.clear();
        const QPointer<AlertView> alert = make(buttons);
        if (hasField) addField(alert);
        alert->show(&window);
        keys(pressed);
        EXPECT_EQ(heard, u"will %1 did %1 "_s.arg(answer));
        EXPECT_EQ(typed, hasField ? u"a"_s : QString());
        EXPECT_TRUE(below->hasFocus());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_FALSE(alert);
    }
}

TEST_F(AlertViewTest, ClosesOnceAndTellsWhenItHasGone) {
    platform::AnimationClock::setInstant(false);
    const QPointer<AlertView> alert = showNew(2);
    QTest::mouseClick(alert->button(1), Qt::LeftButton);
    alert->dismissWithClickedButtonIndex(0);
    EXPECT_EQ(heard, u"will 1 "_s) << "still fading";
    EXPECT_TRUE(shownAtWill);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !alert; }));
    EXPECT_EQ(heard, u"will 1 did 1 "_s);
}

TEST_F(AlertViewTest, ClosesSilentlyWithoutItsDelegate) {
    auto shortLived = std::make_unique<platform::AlertViewDelegate>();
    (new AlertView(u"Title"_s, {}, shortLived.get(), u"OK"_s))->show(&window);
    shortLived.reset();
    keys(u"Return"_s);
    EXPECT_TRUE(shown().isEmpty());
}

TEST_F(AlertViewTest, KeepsTouchesAndKeysFromWhatIsBelow) {
    int touched = 0;
    QObject::connect(below, &QPushButton::clicked, &window, [&] { ++touched; });
    AlertView* alert = showNew(2);
    const QPoint beside(5, 5);
    const QPoint onThePanel = alert->mapTo(&window, QPoint(142, 10));
    for (const QPoint& place : {beside, onThePanel}) tap(place);
    keys(u"F5"_s);
    EXPECT_EQ(touched, 0);
    EXPECT_EQ(shown().size(), 1);
    alert->dismissWithClickedButtonIndex(0);
    tap(beside);
    EXPECT_EQ(touched, 1);
}

TEST_F(AlertViewTest, StacksTheNewestOnTop) {
    AlertView* older = showNew(2);
    AlertView* newer = showNew(1);
    EXPECT_EQ(shown(), QList<AlertView*>({older, newer}));
    EXPECT_TRUE(newer->button(0)->hasFocus());
    keys(u"Esc"_s);
    EXPECT_EQ(shown(), QList<AlertView*>{older});
    EXPECT_TRUE(older->button(0)->hasFocus());
    newer = showNew(1);
    older->dismissWithClickedButtonIndex(1);
    EXPECT_TRUE(newer->button(0)->hasFocus()) << "one that closes below takes no keyboard away";
    newer->dismissWithClickedButtonIndex(0);
    EXPECT_TRUE(below->hasFocus());
}

TEST_F(AlertViewTest, WaitsForAWindow) {
    auto* screen = new QWidget;
    make(1)->show(screen);
    EXPECT_TRUE(AlertView::shownIn(screen).isEmpty());
    screen->setParent(&window);
    screen->show();
    ASSERT_EQ(shown().size(), 1);
    keys(u"Return"_s);
    EXPECT_EQ(heard, u"will 0 did 0 "_s);

    const QPointer<AlertView> neverShown = make(1);
    neverShown->show(std::make_unique<QWidget>().get());
    EXPECT_FALSE(neverShown);

    QWidget later;
    AlertView* answeredEarly = make(1);
    answeredEarly->show(&later);
    answeredEarly->dismissWithClickedButtonIndex(0);
    later.show();
    EXPECT_TRUE(AlertView::shownIn(&later).isEmpty());
    EXPECT_EQ(heard, u"will 0 did 0 will 0 did 0 "_s);
}

TEST_F(AlertViewTest, LeavesRoomForEverything) {
    const QString sentence = u"Here you can manually enter hostnames or IPs, for example one of your own. "_s;
    const struct {
        const char* what;
        int buttons;
        bool hasField;
        QString title;
        QString message;
    } cases[] = {
        {"two lines over a field", 2, true, u"Create Global Rule: enter hostname/IP without www."_s, u"\n\n"_s},
        {"one line over a field", 2, true, u"Rule"_s, u"\n\n"_s},
        {"help", 2, false, u"Global Allow"_s, sentence.repeated(6)},
        {"three buttons", 3, false, u"Import/Delete"_s, sentence.repeated(3)},
        {"a wide word", 2, false, u"Import VxmSettings-2013-09-13_21-45-10_copied-from-the-other-phone.plist?"_s, {}},
        {"too much", 1, false, u"Title"_s, sentence.repeated(60)},
    };
    for (const auto& [what, buttons, hasField, title, message] : cases) {
        SCOPED_TRACE(what);
        AlertView* alert = make(buttons, title, message);
        if (hasField) addField(alert);
        alert->show(&window);
        EXPECT_TRUE(window.rect().contains(QRect(alert->mapTo(&window, QPoint()), alert->size())));
        QList<QRect> places;
        // Of what scrolls, the part that is seen.
        const auto place = [&](const QWidget* part, const QRect& seen) {
            places.append({part->mapTo(alert, seen.topLeft()), seen.size()});
        };
        for (const QLabel* label : alert->findChildren<QLabel*>()) {
            EXPECT_GE(label->height(), label->heightForWidth(label->width()));
            if (!label->text().trimmed().isEmpty()) place(label, label->visibleRegion().boundingRect());
        }
        for (int index = 0; index < buttons; ++index) {
            place(alert->button(index), alert->button(index)->rect());
            EXPECT_GE(alert->button(index)->height(), 32);
            EXPECT_EQ(alert->button(index)->x() > 0, index == 1 && buttons == 2) << "two stand side by side";
        }
        if (hasField) places.append({16, 84, 252, 25});
        for (const QRect& each : places) {
            EXPECT_TRUE(alert->rect().contains(each));
            for (const QRect& other : places) EXPECT_TRUE(&each == &other || !each.intersects(other));
        }
        alert->dismissWithClickedButtonIndex(0);
    }
}

TEST_F(AlertViewTest, ScrollsWhatIsTooLongAndStaysCentred) {
    AlertView* alert = make(1, u"Title"_s, u"A line of text.\n"_s.repeated(80));
    alert->show(&window);
    QScrollBar* bar = nullptr;
    for (QScrollBar* each : alert->findChildren<QScrollBar*>()) bar = each->maximum() > 0 ? each : bar;
    ASSERT_TRUE(bar);
    keys(u"PgDown"_s);
    const int paged = bar->value();
    EXPECT_GT(paged, 0);
    const QPoint from = alert->mapTo(&window, QPoint(142, 200));
    const QPoint to = from - QPoint(0, 50);
    release(to);  // of a finger that came down before the alert did
    EXPECT_EQ(bar->value(), paged);
    drag(from, to - from);
    EXPECT_EQ(bar->value(), paged + 50);
    const int before = alert->height();
    window.resize(400, 700);
    QCoreApplication::processEvents();
    EXPECT_GT(alert->height(), before);
    const QPoint centre = alert->mapTo(&window, alert->rect().center());
    EXPECT_LE((centre - window.rect().center()).manhattanLength(), 2);
}

// Which of the colours the title is written in, by its reddest or bluest point.
QChar inkOf(QPushButton& button) {
    const QImage picture = button.grab(button.rect().adjusted(2, 2, 0, 0)).toImage();
    int redness = 0;
    for (int pixel = 0; pixel < picture.width() * picture.height(); ++pixel) {
        const QColor at = picture.pixelColor(pixel % picture.width(), pixel / picture.width());
        if (std::abs(at.red() - at.blue()) > std::abs(redness)) redness = at.red() - at.blue();
    }
    return std::abs(redness) <= 60 ? u'-' : redness > 0 ? u'r' : u'b';
}

TEST_F(AlertViewTest, ButtonThatDestroysIsRedAndNeverTheOneThatMatters) {
    // The inks of its buttons: red, blue, neither.
    const std::pair<QString, std::vector<int>> cases[] = {{u"b"_s, {}},       {u"-b"_s, {}},   {u"--b"_s, {}},
                                                          {u"-br"_s, {2}},    {u"-rb"_s, {1}}, {u"-r"_s, {1}},
                                                          {u"-rr"_s, {1, 2}}, {u"r"_s, {0}}};
    for (const auto& [inks, destructive] : cases) {
        AlertView* alert = make(static_cast<int>(inks.size()));
        for (const int index : destructive) alert->setDestructive(index);
        alert->show(&window);
        window.setFocus();  // its frame is blue
        QString seen;
        for (int index = 0; index < alert->numberOfButtons(); ++index) {
            seen += inkOf(*alert->button(index));
            EXPECT_EQ(alert->button(index)->font().bold(), inks[index] == u'b');
        }
        EXPECT_EQ(seen, inks);
        alert->dismissWithClickedButtonIndex(0);
    }
}

}  // namespace
