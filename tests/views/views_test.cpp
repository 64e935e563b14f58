// Frames, fonts and colours of bars, cells and chrome, measured on the real widgets.
#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QImage>
#include <QLabel>
#include <QRegion>
#include <QTest>
#include <functional>

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

using views::Chrome;

const Chrome& tallPhone() {
    static const Chrome chrome(false, QStringLiteral("iPhone"), {320, 568});
    return chrome;
}

class Screen : public views::VxmScreen {
public:
    Screen() : VxmScreen(tallPhone()) {}
    void add(platform::ImageButton&) override { asked += QStringLiteral("add "); }
    void setEditMode(platform::ImageButton&) override { asked += QStringLiteral("edit "); }
    void presentSettings(platform::ImageButton&) override { asked += QStringLiteral("settings "); }
    void done(platform::ImageButton&) override { asked += QStringLiteral("done "); }
    QString asked;
};

QColor textColour(const QWidget* widget) {
    return widget->palette().color(widget->foregroundRole());
}

TEST(ChromeTest, BodyHeightFollowsModelAndScreen) {
    const struct {
        const char16_t* model;
        QSize screen;
        int bodyHeight;
    } cases[] = {
        {u"iPhone", {320, 568}, 508}, {u"iPod", {320, 568}, 508},   {u"iPhone", {320, 480}, 420},
        {u"iPad", {320, 568}, 420},   {u"iphone", {320, 568}, 420}, {u"iPod touch", {320, 568}, 420},
        {u"iPhone", {320, 569}, 420}, {u"iPhone", {320, 567}, 420},
    };
    for (const auto& each : cases) {
        const QString model = QStringView(each.model).toString();
        EXPECT_EQ(Chrome(false, model, each.screen).bodyHeight(), each.bodyHeight)
            << model.toStdString() << " " << each.screen.height();
    }
}

TEST(ChromeTest, RoundsHalvesAwayFromZero) {
    EXPECT_EQ(views::makeRoundedRect(12.5F, -0.5F, 12.4F, 0.5F), QRect(13, -1, 12, 1));
}

TEST(ChromeTest, FallbackFontsHaveTheMetricsOfTheFamily) {
    EXPECT_FALSE(views::isFontInstalled(QStringLiteral("HelveticaNeue-CondensedBold")));
    const QFont title = tallPhone().rowTitle();
    EXPECT_EQ(title.pixelSize(), 14);
    EXPECT_TRUE(title.bold());
    EXPECT_EQ(tallPhone().rowUnderText().pixelSize(), 13);
    EXPECT_EQ(tallPhone().barTitle().pixelSize(), 20);
    EXPECT_EQ(tallPhone().helpText().pixelSize(), 12);
    EXPECT_EQ(Chrome(true, QStringLiteral("iPhone"), {320, 568}).rowTitle().pixelSize(), 15);
    // Helvetica's advance widths are 1/1000 em: H 722, i 222.
    const QFontMetricsF metrics(views::fontWithName(QStringLiteral("Helvetica"), 100));
    EXPECT_NEAR(metrics.horizontalAdvance(QStringLiteral("HHHHHHHHHH")), 722, 8);
    EXPECT_NEAR(metrics.horizontalAdvance(QStringLiteral("iiiiiiiiii")), 222, 8);
}

TEST(NavBarTest, ShowsTheButtonsItIsAskedForInTheirPlaces) {
    Screen screen;
    views::VxmNavBarView bar({0, 0, 320, 40}, screen, true, false, true);
    EXPECT_EQ(bar.backButton()->geometry(), QRect(0, -3, 52, 46));
    EXPECT_EQ(bar.editButton()->geometry(), QRect(276, 4, 32, 32));
    bar.show();
    EXPECT_TRUE(bar.backButton()->isVisible());
    bar.changeEditButtonVisibility(false);
    EXPECT_FALSE(bar.editButton()->isVisible());
    bar.changeEditButtonVisibility(true);
    EXPECT_TRUE(bar.editButton()->isVisible());
    bar.editButton()->click();
    EXPECT_EQ(screen.asked, QStringLiteral("edit "));
    EXPECT_EQ(bar.palette().color(QPalette::Window), QColor(245, 245, 245));
}

TEST(NavBarTest, WithoutButtonsShowsOnlyItsTitle) {
    Screen screen;
    views::VxmNavBarView bar({0, 0, 320, 40}, screen, false, false, false);
    bar.show();
    for (auto* button : bar.findChildren<platform::ImageButton*>()) EXPECT_FALSE(button->isVisible());
}

TEST(NavBarTest, SettingsButtonTakesTheBackButtonsPlace) {
    Screen screen;
    views::VxmNavBarView bar({0, 0, 320, 40}, screen, false, true, false);
    bar.showSettingsButton();
    EXPECT_EQ(bar.backButton()->geometry(), QRect(0, -3, 52, 46));
    bar.backButton()->click();
    EXPECT_EQ(screen.asked, QStringLiteral("settings "));
}

TEST(NavBarTest, ChooserBarHasOneButton) {
    Screen screen;
    views::VxmAppChooserNavBarView bar({0, 0, 320, 40}, screen);
    const auto buttons = bar.findChildren<platform::ImageButton*>();
    ASSERT_EQ(buttons.size(), 1);
    EXPECT_EQ(buttons[0]->geometry(), QRect(276, 3, 32, 32));
    buttons[0]->click();
    EXPECT_EQ(screen.asked, QStringLiteral("done "));
}

TEST(NavBarTest, TitleIsCentredForEveryText) {
    Screen screen;
    views::VxmNavBarView bar({0, 0, 320, 40}, screen, true, false, false);
    for (const QString& title : {QStringLiteral("Vexmor"), QStringLiteral("Global Allow"), QString(60, u'W')}) {
        bar.setTitleString(title);
        const QRect frame = bar.titleLabel()->geometry();
        EXPECT_NEAR(frame.center().x(), 160, 1) << title.toStdString();
        EXPECT_NEAR(frame.center().y(), 20, 1);
    }
    EXPECT_LT(bar.titleLabel()->x(), 0) << "a title wider than the bar is cut at both sides";
    EXPECT_EQ(textColour(bar.titleLabel()), QColor(161, 176, 176));
}

// Grabbed, a bar of nothing but letters shows them from edge to edge, over its back button.
TEST(NavBarTest, AWideTitleIsCutAtTheBar) {
    Screen screen;
    views::VxmNavBarView bar({0, 0, 320, 40}, screen, true, false, true);
    bar.setTitleString(QString(60, u'W'));
    const QImage shown = bar.grab().toImage();
    for (const int left : {0, 20, 40, 60, 240, 260, 280, 300}) {
        const auto isTitle = [&](int x) {
            for (int y = 12; y < 28; ++y)
                if (shown.pixelColor(x, y) == QColor(161, 176, 176)) return true;
            return false;
        };
        bool found = false;
        for (int x = left; x < left + 20; ++x) found = found || isTitle(x);
        EXPECT_TRUE(found) << left;
    }
}

TEST(NavBarTest, RightButtonsKeepTheirDistanceFromTheEdgeOfAWiderScreen) {
    Screen screen;
    views::VxmNavBarView bar({0, 0, 320, 40}, screen, true, false, true);
    bar.show();
    bar.resize(412, 40);
    EXPECT_EQ(bar.editButton()->geometry(), QRect(276 + 92, 4, 32, 32));
    EXPECT_EQ(bar.backButton()->x(), 0);
}

TEST(AppCellTest, PlacesNameLineAndIcon) {
    views::VxmAppCell cell(tallPhone(), QStringLiteral("Cell"));
    cell.resize(320, 50);
    cell.show();
    cell.setTitleLabelText(QStringLiteral("Mail"));
    cell.setUnderTextLabelText(QStringLiteral("org.example.Mail"));
    EXPECT_EQ(cell.titleLabel()->geometry(), QRect(55, 11, 27, 16));
    EXPECT_EQ(cell.underTextLabel()->geometry(), QRect(55, 26, 99, 15));
    EXPECT_EQ(textColour(cell.titleLabel()), QColor(98, 111, 111));
    EXPECT_EQ(cell.accessibleName() + cell.accessibleDescription(), QStringLiteral("Mailorg.example.Mail"));

    cell.setUnderTextLabelText(QString());
    EXPECT_TRUE(cell.underTextLabel()->isVisible()) << "an empty line is a line";
    cell.setUnderTextLabelText(std::nullopt);
    EXPECT_FALSE(cell.underTextLabel()->isVisible());
}

TEST(AppCellTest, IconIsCentredToHalfAPoint) {
    views::VxmAppCell cell(tallPhone(), QStringLiteral("Cell"));
    cell.resize(320, 50);
    QImage icon(58, 58, QImage::Format_RGB32);
    icon.fill(Qt::red);
    cell.appImageView()->setImage(icon);
    cell.show();
    for (const auto& [scale, place] : {std::pair{2, QRect(23, 21, 58, 58)}, {1, QRect(11, 10, 29, 29)}}) {
        QImage picture(320 * scale, 50 * scale, QImage::Format_RGB32);
        picture.setDevicePixelRatio(scale);
        cell.render(&picture);
        QRegion red;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (picture.pixelColor(x, y) == Qt::red) red += QRect(x, y, 1, 1);
        EXPECT_EQ(red, QRegion(place)) << scale;
    }
    cell.appImageView()->setImageNamed(QStringLiteral("GlobalAllow"));
    EXPECT_TRUE(cell.appImageView()->image().isNull()) << "a cell that is used again shows an app's icon";
}

// What is cut off at the label's edge was drawn there, in whatever font has the letters.
TEST(AppCellTest, MarksAboveAndBelowTheLineAreNotCut) {
    views::VxmAppCell cell(tallPhone(), QStringLiteral("Cell"));
    views::VxmFileCell file(tallPhone(), QStringLiteral("Cell"));
    Screen screen;
    views::VxmNavBarView bar({0, 0, 320, 40}, screen, true, false, false);
    for (const QString& name : {QStringLiteral("\u1ec6\u1ed8 \u1ea8"), QStringLiteral("jgp\u1ef5\u1ee5"),
                                QStringLiteral("\u0634\u0628\u0643\u0629 \u0627\u0644\u062a\u0637\u0628\u064a\u0642"),
                                QStringLiteral("Mail")}) {
        cell.setTitleLabelText(name);
        file.setTitleLabelText(name);
        bar.setTitleString(name);
        for (QLabel* label : {cell.titleLabel(), file.titleLabel(), bar.titleLabel()}) {
            const auto drawn = [label] {
                const QImage picture = label->grab().toImage();
                qint64 ink = 0;
                for (int y = 0; y < picture.height(); ++y)
                    for (int x = 0; x < picture.width(); ++x) ink += 255 - qGray(picture.pixel(x, y));
                return ink;
            };
            QPalette colours = label->palette();
            colours.setColor(QPalette::Window, Qt::white);
            label->setPalette(colours);
            label->setAutoFillBackground(true);
            const qint64 shown = drawn();
            label->setGeometry(label->geometry().adjusted(0, -20, 0, 20));
            EXPECT_EQ(shown, drawn()) << name.toStdString();
        }
    }
}

TEST(AppCellTest, LongNameRunsOutAtTheRight) {
    views::VxmAppCell cell(tallPhone(), QStringLiteral("Cell"));
    cell.setTitleLabelText(QString(100, u'm'));
    EXPECT_EQ(cell.titleLabel()->x(), 55);
    EXPECT_GT(cell.titleLabel()->geometry().right(), 320);
}

TEST(AppCellTest, TextsAreNotTakenForMarkup) {
    views::VxmAppCell cell(tallPhone(), QStringLiteral("Cell"));
    cell.setTitleLabelText(QStringLiteral("<b>x</b>"));
    EXPECT_EQ(cell.titleLabel()->textFormat(), Qt::PlainText);
}

TEST(FileCellTest, LabelMovesOnTheFirstText) {
    views::VxmFileCell cell(tallPhone(), QStringLiteral("Cell"));
    EXPECT_EQ(cell.titleLabel()->geometry(), QRect(16, 7, 296, 20));
    cell.resize(320, 50);
    cell.show();
    cell.setTitleLabelText(QStringLiteral("hosts.txt"));
    EXPECT_EQ(cell.titleLabel()->x(), 12);
    EXPECT_NEAR(cell.titleLabel()->geometry().center().y(), 25, 1);
}

TEST(RuleCellTest, FieldCanBeEditedOnlyInEditMode) {
    views::VxmRuleCell cell(tallPhone(), QStringLiteral("RCell"));
    EXPECT_EQ(cell.titleTextField()->geometry(), QRect(16, 7, 296, 20));
    EXPECT_FALSE(cell.titleTextField()->isEnabled());
    cell.setEditing(true, false);
    EXPECT_TRUE(cell.titleTextField()->isEnabled());
    EXPECT_EQ(cell.titleTextField()->geometry(), QRect(16, 9, 256, 20));
    cell.setEditing(false, false);
    EXPECT_FALSE(cell.titleTextField()->isEnabled());
    EXPECT_EQ(cell.titleTextField()->geometry(), QRect(16, 9, 296, 20));
}

TEST(RuleCellTest, FieldIsAsMuchWiderAsTheRow) {
    struct Case {
        int rowWidth;
        int read;
        int edited;
    };
    for (const auto& [rowWidth, read, edited] : {Case{320, 296, 256}, Case{412, 388, 348}, Case{300, 276, 236}}) {
        views::VxmRuleCell cell(tallPhone(), QStringLiteral("RCell"));
        cell.setEditing(false, false);
        cell.resize(rowWidth, 50);
        cell.show();
        EXPECT_EQ(cell.titleTextField()->geometry(), QRect(16, 9, read, 20));
        cell.setEditing(true, false);
        EXPECT_EQ(cell.titleTextField()->geometry(), QRect(16, 9, edited, 20));
    }
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
    const std::function<void(views::VxmRuleCell&)> pasts[] = {
        [](auto& cell) { show(cell, QStringLiteral("short"), 320, false); },
        [&](auto& cell) { show(cell, wide, 320, false); },
        [&](auto& cell) { show(cell, wide, 320, true); },
        [&](auto& cell) { show(cell, wide, 200, false); },
    };
    const int fullSize = tallPhone().rowTitle().pixelSize();
    for (const int ruleWidth : {100, 250, 280, 300, 500}) {
        QString rule;
        while (views::sizeWithFont(rule, tallPhone().rowTitle()).width() < ruleWidth) rule += u'i';
        for (const int rowWidth : {320, 412, 200}) {
            for (const bool isEditing : {false, true}) {
                views::VxmRuleCell fresh(tallPhone(), QStringLiteral("RCell"));
                show(fresh, rule, rowWidth, isEditing);
                const int room = fresh.titleTextField()->width();
                EXPECT_EQ(fresh.titleTextField()->font().pixelSize() < fullSize, ruleWidth > room) << ruleWidth;
                for (const auto& past : pasts) {
                    views::VxmRuleCell cell(tallPhone(), QStringLiteral("RCell"));
                    past(cell);
                    show(cell, rule, rowWidth, isEditing);
                    EXPECT_EQ(cell.grab().toImage(), fresh.grab().toImage()) << ruleWidth << " in " << rowWidth;
                    views::VxmRuleCell other(tallPhone(), QStringLiteral("RCell"));
                    show(other, rule, rowWidth, isEditing);
                    for (auto* typedInto : {&cell, &other}) QTest::keyClicks(typedInto->titleTextField(), wide);
                    EXPECT_EQ(cell.titleTextField()->font(), other.titleTextField()->font()) << ruleWidth;
                }
            }
        }
    }
}

TEST(RuleCellTest, PlacesItsLabels) {
    views::VxmRuleCell cell(tallPhone(), QStringLiteral("RCell"));
    cell.resize(320, 50);
    cell.show();
    cell.setUnderTextLabelText(QStringLiteral("a date"));
    EXPECT_EQ(cell.underTextLabel()->x(), 18);
    EXPECT_NEAR(cell.underTextLabel()->geometry().center().y(), 25 + 12, 1);
    cell.setSmallTextLabelText(QStringLiteral("pt"));
    EXPECT_EQ(cell.smallTextLabel()->geometry().right() + 1, 284);
    cell.setBigTextLabelText(QStringLiteral("12"));
    EXPECT_NEAR(cell.bigTextLabel()->geometry().right() + 1, cell.smallTextLabel()->x(), 1);
    cell.setUnderTextLabelText(std::nullopt);
    EXPECT_FALSE(cell.underTextLabel()->isVisible());
    cell.setUnderTextLabelText(QStringLiteral("a date"));
    EXPECT_TRUE(cell.underTextLabel()->isVisible());
}

TEST(ScreenViewTest, PanelFillsWhatTheDesignLeavesIt) {
    const struct {
        QSize window;
        int bodyHeight;
        int designHeight;
        QRect panel;
    } cases[] = {
        {{320, 548}, 508, 548, {0, 40, 320, 508}},
        {{320, 460}, 420, 460, {0, 40, 320, 420}},
        {{320, 548}, 420, 548, {0, 40, 320, 420}},
        {{412, 915}, 508, 548, {0, 40, 412, 875}},
    };
    for (const auto& each : cases) {
        views::ScreenView view(new QWidget, new QWidget, each.bodyHeight, each.designHeight);
        view.resize(each.window);
        view.show();
        EXPECT_EQ(view.panel()->geometry(), each.panel);
    }
}

}  // namespace
