// The fonts of a device that has the condensed bold face which the names ask for, and no other of its family.
#include <gtest/gtest.h>

#include <QFile>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QTemporaryDir>

#include "views/Chrome.h"

namespace {

// Before the toolkit asks: one of the fonts that are always installed takes that face's names.
class Catalog {
public:
    Catalog() {
        QFile file(directory_.filePath(QStringLiteral("fonts.conf")));
        if (!file.open(QFile::WriteOnly)) return;
        file.write(
            "<?xml version='1.0'?><!DOCTYPE fontconfig SYSTEM 'fonts.dtd'><fontconfig>"
            "<dir>/usr/share/fonts/truetype/liberation</dir><cachedir>" +
            directory_.path().toUtf8() +
            "</cachedir><match target='scan'>"
            "<test name='fullname'><string>Liberation Sans Narrow Bold</string></test>"
            "<edit name='family'><string>Helvetica Neue</string></edit>"
            "<edit name='style'><string>Bold Condensed</string></edit>"
            "<edit name='postscriptname'><string>HelveticaNeue-CondensedBold</string></edit>"
            "</match></fontconfig>");
        qputenv("FONTCONFIG_FILE", file.fileName().toUtf8());
    }

private:
    QTemporaryDir directory_;
};
const Catalog catalog;

TEST(FontsTest, EachTextHasTheFaceOfItsNameOrTheFallbacks) {
    EXPECT_TRUE(views::isFontInstalled(u"HelveticaNeue-CondensedBold"));
    EXPECT_FALSE(views::isFontInstalled(u"HelveticaNeue-Light"));
    const views::Chrome chrome(true, QStringLiteral("iPhone"), {320, 568});
    const struct {
        QFont font;
        const char* family;
        double width;  // of a capital H, for a size of 1
        int size;
    } cases[] = {
        {chrome.barTitle(), "Helvetica Neue", 0.592, 20},   {chrome.rowTitle(), "Helvetica Neue", 0.592, 15},
        {chrome.bigText(), "Helvetica Neue", 0.592, 30},    {chrome.rowUnderText(), "Liberation Sans", 0.722, 13},
        {chrome.smallText(), "Liberation Sans", 0.722, 15}, {chrome.button(), "Liberation Sans", 0.722, 15},
        {chrome.helpText(), "Liberation Sans", 0.722, 13},
    };
    for (const auto& [font, family, width, size] : cases) {
        const QFontInfo used(font);
        EXPECT_EQ(used.family().toStdString(), family) << size;
        EXPECT_EQ(used.pixelSize(), size);
        EXPECT_NEAR(QFontMetricsF(font).horizontalAdvance(QString(100, u'H')), 100 * width * size, 100) << size;
    }
}

}  // namespace
