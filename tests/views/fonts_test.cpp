// The fonts of a device that has the condensed bold face which the names ask for, and of its family only one that no
// name asks for.
#include <gtest/gtest.h>

#include <QFile>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QTemporaryDir>

#include "views/Chrome.h"

namespace {

using namespace Qt::StringLiterals;

// Before the toolkit asks: fonts that are always installed take the names of the family's faces.
const bool isPrepared = [] {
    static const QTemporaryDir directory;
    const auto renamed = [](const char* name, const char* style, const char* postscriptName) {
        return QByteArray("<match target='scan'><test name='fullname'><string>") + name + "</string></test>" +
               "<edit name='family'><string>Helvetica Neue</string></edit><edit name='style'><string>" + style +
               "</string></edit><edit name='postscriptname'><string>" + postscriptName +
               "</string></edit><edit name='foundry'><string>none</string></edit></match>";
    };
    QFile file(directory.filePath(u"fonts.conf"_s));
    const QByteArray catalog = "<fontconfig><dir>/usr/share/fonts/truetype/liberation</dir><cachedir>" +
                               directory.path().toUtf8() + "</cachedir>" +
                               renamed("Liberation Sans Narrow Bold", "Bold Condensed", "HelveticaNeue-CondensedBold") +
                               renamed("Liberation Serif", "Book", "HelveticaNeue-Book") + "</fontconfig>";
    return file.open(QFile::WriteOnly) && file.write(catalog) > 0 &&
           qputenv("FONTCONFIG_FILE", file.fileName().toUtf8());
}();

TEST(FontsTest, EachTextHasTheFaceOfItsNameOrTheFallbacks) {
    ASSERT_TRUE(isPrepared);
    EXPECT_TRUE(views::isFontInstalled(u"HelveticaNeue-CondensedBold"));
    EXPECT_FALSE(views::isFontInstalled(u"HelveticaNeue-Light"));
    const views::Chrome chrome(true, u"iPhone"_s, {320, 568});
    const char* condensed = "Helvetica Neue";
    const char* fallback = "Liberation Sans";
    const std::tuple<QFont, const char*, int> cases[] = {
        {chrome.barTitle(), condensed, 20},    {chrome.rowTitle(), condensed, 15}, {chrome.bigText(), condensed, 30},
        {chrome.rowUnderText(), fallback, 13}, {chrome.smallText(), fallback, 15}, {chrome.button(), fallback, 15},
        {chrome.helpText(), fallback, 13},
    };
    for (const auto& [font, family, size] : cases) {
        const QFontInfo used(font);
        EXPECT_EQ(used.family().toStdString(), family) << size;
        EXPECT_EQ(used.pixelSize(), size);
        const double width = family == condensed ? 0.592 : 0.722;  // of a capital H, for a size of 1
        EXPECT_NEAR(QFontMetricsF(font).horizontalAdvance(QString(100, u'H')), 100 * width * size, 100) << size;
    }
}

}  // namespace
