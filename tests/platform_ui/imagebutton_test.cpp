#include "platform/ui/controls/ImageButton.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QDir>
#include <QTest>

#include "platform/ui/accessibility/Accessibility.h"
#include "platform/ui/drawing/Images.h"
#include "resources/Resources.h"

namespace {

using platform::ImageButton;
namespace Images = platform::Images;

QString text(const char* latin) {
    return QString::fromLatin1(latin);
}

class ImageButtonTest : public testing::Test {
protected:
    ImageButtonTest() : button(new ImageButton(&window)) {
        platform::installAccessibility();
        window.resize(200, 100);
        button->setGeometry(0, 0, 52, 46);
        button->setImage(text("BackButton"));
        QObject::connect(button, &ImageButton::clicked, &window, [this] { ++clicks; });
        window.show();
    }

    QWidget window;
    ImageButton* button;
    int clicks = 0;
};

TEST_F(ImageButtonTest, ActsOnTouchUpInside) {
    struct Case {
        const char* name;
        Qt::MouseButton button;
        QPoint pressed, released;
        int clicks;
    };
    const Case cases[] = {
        {"tap", Qt::LeftButton, {5, 5}, {5, 5}, 1},
        {"slid within", Qt::LeftButton, {5, 5}, {50, 44}, 1},
        {"slid out", Qt::LeftButton, {5, 5}, {60, 5}, 0},
        {"another button", Qt::RightButton, {5, 5}, {5, 5}, 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        clicks = 0;
        QTest::mousePress(button, each.button, {}, each.pressed);
        QTest::mouseMove(button, each.released);
        QTest::mouseRelease(button, each.button, {}, each.released);
        EXPECT_EQ(clicks, each.clicks);
        EXPECT_FALSE(button->isHighlighted());
    }
}

TEST_F(ImageButtonTest, AnswersToTheKeyboardAndToAssistance) {
    button->setFocus(Qt::TabFocusReason);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) QTest::keyClick(button, key);
    EXPECT_EQ(clicks, 3);
    button->setAccessibleName(text("Back"));
    QAccessibleInterface* read = QAccessible::queryAccessibleInterface(button);
    EXPECT_EQ(read->role(), QAccessible::Button);
    EXPECT_EQ(read->text(QAccessible::Name), text("Back"));
    read->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(clicks, 4);
    button->setEnabled(false);
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::keyClick(button, Qt::Key_Return);
    EXPECT_EQ(clicks, 4);
}

TEST_F(ImageButtonTest, LosesItsHighlightWhenATouchEnds) {
    QObject::connect(button, &ImageButton::clicked, &window, [this] { button->setHighlighted(true); });
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_FALSE(button->isHighlighted()) << "the highlight that its own action asked for goes as well";
    button->setHighlighted(true);
    EXPECT_TRUE(button->isHighlighted());
}

TEST_F(ImageButtonTest, MayGoInItsOwnSignal) {
    const QPointer<ImageButton> alive = button;
    QObject::connect(button, &ImageButton::clicked, &window, [this] { delete button; });
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_FALSE(alive);
}

TEST(Images, AreThereInTheSizesThatTheScreensLayThemOutBy) {
    resources::initialize();
    struct Case {
        const char* name;
        QSize points;
    };
    const Case cases[] = {
        {"GlobalAllow", {29, 29}},
        {"GlobalDeny", {29, 29}},
        {"Add", {29, 29}},
        {"Import", {29, 29}},
        {"DefaultAppIcon", {29, 29}},
        {"BackButton", {32, 32}},
        {"SettingsButton", {32, 32}},
        {"AddButton", {32, 32}},
        {"EditButton", {32, 32}},
        {"AcceptButton", {32, 32}},
        {"ReloadButton", {32, 32}},
        {"TrashButton", {32, 32}},
        {"CapSelectorBackground", {207, 31}},
        {"CapSelected", {106, 31}},
        {"SettingsDefaultCellBackground.png", {320, 50}},
        {"textfield", {262, 31}},
        {"VexmorGUI", {64, 64}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        EXPECT_EQ(Images::size(text(each.name)), each.points);
        for (const double scale : {1.0, 1.5, 3.0}) {
            const QPixmap image = Images::named(text(each.name), scale);
            EXPECT_EQ(image.devicePixelRatio(), scale);
            EXPECT_GE(image.width(), each.points.width() * scale);
            const QImage pixels = image.toImage();
            EXPECT_NE(pixels, QImage(pixels.size(), pixels.format())) << "there is something in it";
        }
    }
    EXPECT_EQ(QDir(text(":/images")).count(), std::size(cases));
}

TEST(Images, AreNullWhenThereAreNone) {
    EXPECT_TRUE(Images::named(text("NoSuchImage"), 2).isNull());
    EXPECT_TRUE(Images::size(text("NoSuchImage")).isEmpty());
    EXPECT_EQ(Images::named(text("Add"), 2).cacheKey(), Images::named(text("Add"), 2).cacheKey()) << "painted once";
}

}  // namespace
