// Frames, fonts and colours of bars, cells and chrome, measured on the real widgets.
#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QImage>
#include <QLabel>
#include <QRegion>
#include <QTest>

#include "platform/ui/controls/ImageButton.h"
#include "platform/ui/controls/TextField.h"
#include "views/Chrome.h"
#include "views/IconView.h"
#include "views/Label.h"
#include "views/ScreenView.h"
#include "views/VxmAppCell.h"
#include "views/VxmFileCell.h"
#include "views/VxmNavBarView.h"
#include "views/VxmRuleCell.h"
#include "views/VxmScreen.h"

namespace {

using namespace Qt::StringLiterals;
using views::Chrome;
using views::VxmNavBarView;

constexpr QRect barFrame{0, 0, 320, 40};

const Chrome& tallPhone() {
    static const Chrome chrome(false, u"iPhone"_s, {320, 568});
    return chrome;
}

struct Screen : views::VxmScreen {
    Screen() : VxmScreen(tallPhone()) {}
    void add(platform::ImageButton&) override { asked += u"add "_s; }
    void setEditMode(platform::ImageButton&) override { asked += u"edit "_s; }
    void presentSettings(platform::ImageButton&) override { asked += u"settings "_s; }
    void done(platform::ImageButton&) override { asked += u"done "_s; }
    QString asked;
};

// Where the picture has the colour, in its pixels.
QRegion partsOf(const QImage& picture, const QColor& colour) {
    QRegion parts;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixelColor(x, y) == colour) parts += QRect(x, y, 1, 1);
    return parts;
}

// A cell in a row of the usual size.
template <class Cell>
struct Shown : Cell {
    Shown() : Cell(tallPhone(), u"Cell"_s) {
        this->resize(320, 50);
        this->show();
    }
};

QColor textColour(const QWidget* widget) {
    return widget->palette().color(widget->foregroundRole());
}

TEST(ChromeTest, BodyHeightFollowsModelAndScreen) {
    const std::tuple<QString, int, int> cases[] = {
        {u"iPhone"_s, 568, 508}, {u"iPod"_s, 568, 508},   {u"iPhone"_s, 480, 420},     {u"iPad"_s, 568, 420},
        {u"iPhone"_s, 569, 420}, {u"iPhone"_s, 567, 420}, {u"iPod touch"_s, 568, 420}, {u"iphone"_s, 568, 420}};
    for (const auto& [model, height, bodyHeight] : cases)
        EXPECT_EQ(Chrome(false, model, {320, height}).bodyHeight(), bodyHeight) << model.toStdString() << height;
}

TEST(ChromeTest, RoundsHalvesAwayFromZero) {
    EXPECT_EQ(views::makeRoundedRect(12.5F, -0.5F, 12.4F, 0.5F), QRect(13, -1, 12, 1));
}

TEST(ChromeTest, FallbackFontsHaveTheMetricsOfTheFamily) {
    EXPECT_FALSE(views::isFontInstalled(u"HelveticaNeue-CondensedBold"_s));
    const Chrome& chrome = tallPhone();
    for (const auto& [font, size] : {std::pair(chrome.rowTitle(), 14),
                                     {chrome.rowUnderText(), 13},
                                     {chrome.barTitle(), 20},
                                     {chrome.helpText(), 12}})
        EXPECT_EQ(font.pixelSize(), size);
    EXPECT_TRUE(chrome.rowTitle().bold());
    // Helvetica's advance widths are 1/1000 em: H 722, i 222.
    const QFontMetricsF metrics(views::fontWithName(u"Helvetica"_s, 100));
    for (const auto& [letter, width] : {std::pair(u'H', 722), {u'i', 222}})
        EXPECT_NEAR(metrics.horizontalAdvance(QString(10, letter)), width, 8);
}

TEST(NavBarTest, ShowsTheButtonsItIsAskedForInTheirPlaces) {
    Screen screen;
    VxmNavBarView back(barFrame, screen, true, false, false), add(barFrame, screen, false, true, false);
    VxmNavBarView edit(barFrame, screen, false, false, true), settings(barFrame, screen, false, false, false);
    views::VxmAppChooserNavBarView chooser(barFrame, screen);
    settings.showSettingsButton();
    const std::tuple<VxmNavBarView&, QString, QRect, QString> cases[] = {
        // each with its only button
        {back, u"Back"_s, {0, -3, 52, 46}, u""_s},          {add, u"Add"_s, {276, 4, 32, 32}, u"add "_s},
        {edit, u"Edit"_s, {276, 4, 32, 32}, u"edit "_s},    {settings, u"Settings"_s, {0, -3, 52, 46}, u"settings "_s},
        {chooser, u"Done"_s, {276, 3, 32, 32}, u"done "_s},
    };
    for (const auto& [bar, name, frame, asked] : cases) {
        SCOPED_TRACE(name.toStdString());
        bar.show();
        auto buttons = bar.findChildren<platform::ImageButton*>();
        buttons.removeIf([](const auto* button) { return !button->isVisible(); });
        ASSERT_EQ(buttons.size(), 1);
        EXPECT_EQ(buttons[0]->accessibleName(), name);
        EXPECT_EQ(buttons[0]->geometry(), frame);
        bar.resize(412, 40);
        EXPECT_EQ(buttons[0]->geometry(), frame.x() > 160 ? frame.translated(92, 0) : frame) << "on a wider screen";
        screen.asked.clear();
        buttons[0]->click();
        EXPECT_EQ(screen.asked, asked);
    }
    for (const bool isVisible : {false, true}) {
        edit.changeEditButtonVisibility(isVisible);
        EXPECT_EQ(edit.editButton()->isVisible(), isVisible);
    }
}

TEST(NavBarTest, TitleIsCentredAndCutAtTheBar) {
    Screen screen;
    VxmNavBarView bar(barFrame, screen, true, false, true);
    const QColor ink(161, 176, 176);
    for (const QString& title : {u"Vexmor"_s, u"Global Allow"_s, QString(60, u'W')}) {
        bar.setTitleString(title);
        const QPoint centre = bar.titleLabel()->geometry().center();
        EXPECT_NEAR(centre.x(), 160, 1) << title.toStdString();
        EXPECT_NEAR(centre.y(), 20, 1);
    }
    EXPECT_EQ(textColour(bar.titleLabel()), ink);
    EXPECT_EQ(bar.palette().color(QPalette::Window), QColor(245, 245, 245));
    // Of nothing but letters it is seen from edge to edge, over the back button.
    const QImage shown = bar.grab().toImage();
    for (const int left : {0, 20, 40, 60, 240, 260, 280, 300})
        EXPECT_FALSE(partsOf(shown.copy(left, 12, 20, 16), ink).isEmpty()) << left;
}

TEST(AppCellTest, PlacesNameLineAndIcon) {
    Shown<views::VxmAppCell> cell;
    cell.setTitleLabelText(u"Mail"_s);
    cell.setUnderTextLabelText(u"org.example.Mail"_s);
    EXPECT_EQ(cell.titleLabel()->geometry(), QRect(55, 11, 27, 16));
    EXPECT_EQ(cell.underTextLabel()->geometry(), QRect(55, 26, 99, 15));
    EXPECT_EQ(textColour(cell.titleLabel()), QColor(98, 111, 111));
    EXPECT_EQ(cell.accessibleName() + cell.accessibleDescription(), u"Mailorg.example.Mail"_s);

    cell.setUnderTextLabelText(QString());
    EXPECT_TRUE(cell.underTextLabel()->isVisible()) << "an empty line is a line";
    cell.setUnderTextLabelText(std::nullopt);
    EXPECT_FALSE(cell.underTextLabel()->isVisible());
}

TEST(AppCellTest, IconIsCentredToHalfAPoint) {
    Shown<views::VxmAppCell> cell;
    QImage icon(58, 58, QImage::Format_RGB32);
    icon.fill(Qt::red);
    cell.appImageView()->setImage(icon);
    for (const auto& [scale, place] : {std::pair{2, QRect(23, 21, 58, 58)}, {1, QRect(11, 10, 29, 29)}}) {
        QImage picture(320 * scale, 50 * scale, QImage::Format_RGB32);
        picture.setDevicePixelRatio(scale);
        cell.render(&picture);
        EXPECT_EQ(partsOf(picture, Qt::red), QRegion(place)) << scale;
    }
    cell.appImageView()->setImageNamed(u"GlobalAllow"_s);
    EXPECT_TRUE(cell.appImageView()->image().isNull()) << "a cell that is used again shows an app's icon";
}

// What is cut off at the label's edge was drawn there, in whatever font has the letters.
TEST(AppCellTest, MarksAboveAndBelowTheLineAreNotCut) {
    Shown<views::VxmAppCell> cell;
    Shown<views::VxmFileCell> file;
    Screen screen;
    VxmNavBarView bar(barFrame, screen, true, false, false);
    const auto inkOf = [](QLabel* label) {
        const QImage picture = label->grab().toImage();
        qint64 ink = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) ink += 255 - qGray(picture.pixel(x, y));
        return ink;
    };
    for (QLabel* label : {cell.titleLabel(), file.titleLabel(), bar.titleLabel()}) {
        QPalette colours = label->palette();
        colours.setColor(QPalette::Window, Qt::white);
        label->setPalette(colours);
        label->setAutoFillBackground(true);
        for (const QString& name : {u"\u1ec6\u1ed8 \u1ea8"_s, u"jgp\u1ef5\u1ee5"_s, u"شبكة التطبيق"_s, u"Mail"_s}) {
            cell.setTitleLabelText(name);
            file.setTitleLabelText(name);
            bar.setTitleString(name);
            const qint64 shown = inkOf(label);
            label->setGeometry(label->geometry().adjusted(0, -20, 0, 20));
            EXPECT_EQ(shown, inkOf(label)) << name.toStdString();
        }
    }
}

TEST(AppCellTest, LongNameRunsOutAtTheRightAndIsNotTakenForMarkup) {
    Shown<views::VxmAppCell> cell;
    cell.setTitleLabelText(QString(100, u'm'));
    EXPECT_EQ(cell.titleLabel()->x(), 55);
    EXPECT_GT(cell.titleLabel()->geometry().right(), 320);
    EXPECT_EQ(cell.titleLabel()->textFormat(), Qt::PlainText);
}

TEST(FileCellTest, LabelMovesOnTheFirstText) {
    Shown<views::VxmFileCell> cell;
    EXPECT_EQ(cell.titleLabel()->geometry(), QRect(16, 7, 296, 20));
    cell.setTitleLabelText(u"hosts.txt"_s);
    EXPECT_EQ(cell.titleLabel()->x(), 12);
    EXPECT_NEAR(cell.titleLabel()->geometry().center().y(), 25, 1);
}

TEST(RuleCellTest, FieldCanBeEditedOnlyInEditModeAndIsAsMuchWiderAsTheRow) {
    Shown<views::VxmRuleCell> cell;
    EXPECT_EQ(cell.titleTextField()->geometry(), QRect(16, 7, 296, 20));
    EXPECT_FALSE(cell.titleTextField()->isEnabled());
    const std::tuple<int, bool, int> cases[] = {{320, true, 256}, {320, false, 296}, {412, false, 388},
                                                {412, true, 348}, {300, true, 236},  {300, false, 276}};
    for (const auto& [rowWidth, isEditing, width] : cases) {
        cell.resize(rowWidth, 50);
        cell.setEditing(isEditing, false);
        EXPECT_EQ(cell.titleTextField()->geometry(), QRect(16, 9, width, 20));
        EXPECT_EQ(cell.titleTextField()->isEnabled(), isEditing);
    }
    cell.resize(412, 50);
    EXPECT_EQ(cell.titleTextField()->width(), 388) << "without being told of its mode";
}

// In the order in which a table prepares a cell.
void show(views::VxmRuleCell& cell, const QString& rule, int rowWidth, bool isEditing) {
    cell.setTitleLabelText(rule);
    cell.resize(rowWidth, 50);
    cell.setEditing(isEditing, false);
    cell.show();
}

TEST(RuleCellTest, ShowsARuleTheSameWhateverTheCellShowedBefore) {
    const QString wide(60, u'w');
    const std::tuple<QString, int, bool> pasts[] = {
        {u"short"_s, 320, false}, {wide, 320, false}, {wide, 320, true}, {wide, 200, false}};
    const QFont fullSize = tallPhone().rowTitle();
    for (const int ruleWidth : {100, 250, 280, 300, 500}) {
        QString rule;
        while (views::sizeWithFont(rule, fullSize).width() < ruleWidth) rule += u'i';
        for (const int rowWidth : {320, 412, 200}) {
            for (const bool isEditing : {false, true}) {
                SCOPED_TRACE(std::to_string(ruleWidth) + " in " + std::to_string(rowWidth));
                views::VxmRuleCell fresh(tallPhone(), u"RCell"_s);
                platform::TextField& field = *fresh.titleTextField();
                show(fresh, rule, rowWidth, isEditing);
                EXPECT_EQ(field.font().pixelSize() < fullSize.pixelSize(), ruleWidth > field.width());
                const QImage shown = fresh.grab().toImage();
                QTest::keyClicks(&field, wide);
                for (const auto& [pastRule, pastWidth, wasEditing] : pasts) {
                    views::VxmRuleCell cell(tallPhone(), u"RCell"_s);
                    show(cell, pastRule, pastWidth, wasEditing);
                    show(cell, rule, rowWidth, isEditing);
                    EXPECT_EQ(cell.grab().toImage(), shown);
                    QTest::keyClicks(cell.titleTextField(), wide);
                    EXPECT_EQ(cell.titleTextField()->font(), field.font());
                }
            }
        }
    }
}

TEST(RuleCellTest, PlacesItsLabels) {
    Shown<views::VxmRuleCell> cell;
    cell.setUnderTextLabelText(u"a date"_s);
    EXPECT_EQ(cell.underTextLabel()->x(), 18);
    EXPECT_NEAR(cell.underTextLabel()->geometry().center().y(), 25 + 12, 1);
    cell.setSmallTextLabelText(u"pt"_s);
    EXPECT_EQ(cell.smallTextLabel()->geometry().right() + 1, 284);
    cell.setBigTextLabelText(u"12"_s);
    EXPECT_NEAR(cell.bigTextLabel()->geometry().right() + 1, cell.smallTextLabel()->x(), 1);
    for (const auto& line : {std::optional<QString>(), std::optional(u"a date"_s)}) {
        cell.setUnderTextLabelText(line);
        EXPECT_EQ(cell.underTextLabel()->isVisible(), line.has_value());
    }
}

TEST(ScreenViewTest, PanelFillsWhatTheDesignLeavesIt) {
    const std::tuple<QSize, int, int, QSize> cases[] = {{{320, 548}, 508, 548, {320, 508}},
                                                        {{320, 460}, 420, 460, {320, 420}},
                                                        {{320, 548}, 420, 548, {320, 420}},
                                                        {{412, 915}, 508, 548, {412, 875}}};
    for (const auto& [window, bodyHeight, designHeight, panel] : cases) {
        views::ScreenView view(new QWidget, new QWidget, bodyHeight, designHeight);
        view.resize(window);
        view.show();
        EXPECT_EQ(view.panel()->geometry(), QRect(QPoint(0, 40), panel));
    }
}

}  // namespace
