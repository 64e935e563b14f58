// The switch and the image button under a finger, keys and a screen reader, and the images.

#include "platform/ui/accessibility/Accessibility.h"
#include "platform/ui/controls/ImageButton.h"
#include "platform/ui/controls/Switch.h"
#include "platform/ui/drawing/Images.h"
#include "platform/ui/input/HeldPress.h"
#include "platform_ui/WindowTest.h"
#include "resources/Resources.h"

namespace {

using namespace Qt::StringLiterals;
using namespace platform;

struct ControlsTest : WindowTest {
    ControlsTest() : toggle(new Switch(&view)), button(new ImageButton(&view)) {
        installAccessibility();
        view.resize(200, 100);
        toggle->setGeometry(50, 0, 51, 31);
        button->setGeometry(50, 40, 52, 46);
        button->setImage(u"BackButton"_s);
        QObject::connect(toggle, &Switch::valueChanged, &view,
                         [this](const Switch* sender) { told += sender->isOn() ? u'1' : u'0'; });
        QObject::connect(button, &ImageButton::clicked, &view, [this] { told += u'!'; });
        bringToFront(view);
    }

    QWidget view;
    Switch* toggle;
    ImageButton* button;
    QString told;  // 1 or 0 by the switch, ! by the button
};

TEST_F(ControlsTest, AnswerToTheFinger) {
    // Pressed at the first point, released at the last.
    const std::tuple<const char*, QAbstractButton*, bool, std::vector<QPoint>, QString> cases[] = {
        {"tap", toggle, false, {{40, 15}}, u"1"_s},
        {"tap when on", toggle, true, {{10, 15}}, u"0"_s},
        {"a trembling tap", toggle, false, {{20, 15}, {22, 14}, {21, 15}}, u"1"_s},
        {"drag on", toggle, false, {{10, 15}, {25, 15}, {45, 15}}, u"1"_s},
        {"drag off, beyond the edge", toggle, true, {{40, 15}, {0, 15}, {-60, 15}}, u"0"_s},
        {"drag on again to where it is", toggle, true, {{40, 15}, {48, 15}}, {}},
        {"drag there and back", toggle, false, {{10, 15}, {45, 15}, {11, 15}}, {}},
        {"drag less than half", toggle, false, {{10, 15}, {19, 15}}, {}},
        {"pressed, let go outside", toggle, false, {{25, 15}, {25, 90}}, {}},
        {"tap", button, false, {{5, 5}}, u"!"_s},
        {"slid within", button, false, {{5, 5}, {50, 44}}, u"!"_s},
        {"slid out", button, false, {{5, 5}, {60, 5}}, {}},
    };
    for (const auto& [what, control, wasOn, path, heard] : cases) {
        SCOPED_TRACE(what);
        toggle->setOn(wasOn, false);
        told.clear();
        press(control->pos() + path.front());
        for (const QPoint& place : path) moveTo(control->pos() + place);
        EXPECT_EQ(toggle->isOn(), wasOn);
        EXPECT_EQ(told, QString()) << "nothing is decided before the finger leaves";
        release(control->pos() + path.back());
        EXPECT_EQ(told, heard);
        EXPECT_EQ(toggle->isOn(), control == toggle ? wasOn != !heard.isEmpty() : wasOn);
        EXPECT_FALSE(control->isDown() || button->isHighlighted());
    }
    told.clear();
    for (QWidget* control : view.findChildren<QWidget*>()) QTest::mouseClick(control, Qt::RightButton);
    EXPECT_EQ(told, QString());
}

TEST_F(ControlsTest, APressWithoutAnEndIsOverWithTheNextOne) {
    const HeldPress::Watch watch;
    press(toggle->geometry().center());
    ASSERT_TRUE(toggle->isDown());
    press(button->geometry().center());
    EXPECT_FALSE(toggle->isDown());
    release(button->geometry().center());
    EXPECT_EQ(told, u"!"_s);
}

TEST_F(ControlsTest, HeldSwitchIsAsBeforeWhenThePressIsCancelled) {
    const QPoint place = toggle->pos();
    const auto look = [this] { return toggle->grab().toImage(); };
    const QImage atRest = look();
    press(place + QPoint(10, 15));
    moveTo(place + QPoint(45, 15));
    EXPECT_NE(look(), atRest);
    HeldPress::cancel(view);
    EXPECT_EQ(look(), atRest);
    moveTo(place + QPoint(48, 15));
    EXPECT_EQ(look(), atRest);
    release(place + QPoint(48, 15));
    EXPECT_EQ(told, QString());
    tap(place + QPoint(40, 15));
    EXPECT_EQ(told, u"1"_s);
}

TEST_F(ControlsTest, AnswerToTheKeyboardAndToAssistance) {
    const std::tuple<QAbstractButton*, QAccessible::Role, QString, QString> cases[] = {
        {toggle, QAccessible::CheckBox, QAccessibleActionInterface::toggleAction(), u"1010"_s},
        {button, QAccessible::Button, QAccessibleActionInterface::pressAction(), u"!!!!"_s}};
    for (const auto& [control, role, action, heard] : cases) {
        told.clear();
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
            QTest::keyClick(control, key);
            QKeyEvent held(QEvent::KeyPress, key, {}, {}, true);
            QCoreApplication::sendEvent(control, &held);
        }
        control->setText(u"Name"_s);
        QAccessibleInterface* element = read(control);
        EXPECT_EQ(element->role(), role);
        EXPECT_EQ(element->text(QAccessible::Name), u"Name");
        EXPECT_EQ(element->state().checked, control == toggle);
        element->actionInterface()->doAction(action);
        EXPECT_FALSE(element->state().checked);
        EXPECT_EQ(told, heard);
        control->setEnabled(false);
        QTest::mouseClick(control, Qt::LeftButton);
        QTest::keyClick(control, Qt::Key_Return);
        element->actionInterface()->doAction(action);
        EXPECT_EQ(told, heard);
    }
}

TEST_F(ControlsTest, SwitchSaysNothingOfWhatTheProgramDoes) {
    AnimationClock::setInstant(false);
    const QImage off = toggle->grab().toImage();
    toggle->setOn(true, true);
    toggle->setOn(false, false);
    EXPECT_TRUE(QTest::qWaitFor([this] { return toggle->children().isEmpty(); })) << "an animation goes on for ever";
    EXPECT_EQ(toggle->grab().toImage(), off) << "an animation moves the knob although another has replaced it";
    EXPECT_EQ(told, QString());
}

TEST_F(ControlsTest, ButtonLosesItsHighlightWhenATouchEnds) {
    QObject::connect(button, &ImageButton::clicked, &view, [this] { button->setHighlighted(true); });
    tap(button->geometry().center());
    EXPECT_EQ(told, u"!"_s);
    EXPECT_FALSE(button->isHighlighted()) << "the highlight that its own action asked for goes as well";
}

TEST_F(ControlsTest, MayGoInTheirOwnSignals) {
    QObject::connect(toggle, &Switch::valueChanged, &view, [this] { delete toggle; });
    QObject::connect(button, &ImageButton::clicked, &view, [this] { delete button; });
    const QPointer<QWidget> controls[] = {toggle, button};
    for (const QPointer<QWidget>& control : controls) {
        tap(control->geometry().center());
        EXPECT_FALSE(control);
    }
}

TEST(Images, AreThereInTheSizesThatTheScreensLayThemOutBy) {
    resources::initialize();
    const std::pair<QSize, QString> table[] = {
        {{29, 29}, u"GlobalAllow GlobalDeny Add Import DefaultAppIcon"_s},
        {{32, 32}, u"BackButton SettingsButton AddButton EditButton AcceptButton ReloadButton TrashButton"_s},
        {{207, 31}, u"CapSelectorBackground"_s},
        {{106, 31}, u"CapSelected"_s},
        {{320, 50}, u"SettingsDefaultCellBackground.png"_s},
        {{262, 31}, u"textfield"_s},
        {{64, 64}, u"VexmorGUI"_s},
    };
    QStringList all;
    for (const auto& [points, names] : table) {
        for (const QString& name : names.split(u' ')) {
            SCOPED_TRACE(name.toStdString());
            all.append(name);
            EXPECT_EQ(Images::size(name), points);
            const QImage image = Images::named(name, 1.5).toImage();
            EXPECT_EQ(image.devicePixelRatio(), 1.5);
            EXPECT_GE(image.width(), points.width() * 1.5);
            QImage blank = image;
            blank.fill(Qt::transparent);
            EXPECT_NE(image, blank) << "there is something in it";
        }
    }
    EXPECT_EQ(QDir(u":/images"_s).count(), all.size());
    EXPECT_TRUE(Images::named(u"NoSuchImage"_s, 2).isNull());
    EXPECT_TRUE(Images::size(u"NoSuchImage"_s).isEmpty());
    EXPECT_EQ(Images::named(u"Add"_s, 2).cacheKey(), Images::named(u"Add"_s, 2).cacheKey()) << "painted once";
}

}  // namespace
