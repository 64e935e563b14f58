// The log: how its text is wrapped, and what the view does under mouse and keys.
#include <gtest/gtest.h>

#include "screens/settings/CharacterWidths.h"
#include "screens/settings/LogRows.h"
#include "screens/settings/LogText.h"
#include "screens/settings/LogTextView.h"
#include "screens/settings/VxmLogViewController.h"
#include "support/TestDevice.h"
#include "views/Chrome.h"

namespace {

using screens::LogRows;
using screens::LogText;

struct LogRowsTest : testing::Test {
    // The rows of a text, ten digits wide, joined by "|".
    QString wrapped(const QString& string) {
        const LogText text = LogText::of(string);
        const LogRows rows(text, widths, 10.5F * widths.of('0'), 4 * widths.of('0'));
        QStringList pieces;
        for (const auto& row : rows.rows(0, rows.count())) pieces << text.slice(row.begin, row.end);
        return pieces.join(QLatin1Char('|'));
    }

    screens::CharacterWidths widths{views::fontWithName(QStringLiteral("Helvetica"), 12)};
};

TEST_F(LogRowsTest, BreakAfterWordsOrElseAnywhere) {
    const std::pair<QString, QString> cases[] = {
        {{}, {}},
        {QStringLiteral("1\n"), QStringLiteral("1|")},
        {QStringLiteral("1\r\n2\r3\n\n4\u20285\u20296"), QStringLiteral("1|2|3||4|5|6")},
        {QStringLiteral("0123456789"), QStringLiteral("0123456789")},
        {QStringLiteral("01234567890"), QStringLiteral("0123456789|0")},
        {QStringLiteral("00000 111111"), QStringLiteral("00000 |111111")},
        {QStringLiteral("00000-11111"), QStringLiteral("00000-|11111")},
        {QStringLiteral("0000000000      1"), QStringLiteral("0000000000      |1")},
        {QStringLiteral("0\t0\t0\t0"), QStringLiteral("0\t0\t0\t|0")},
    };
    for (const auto& [text, rows] : cases) EXPECT_EQ(wrapped(text), rows) << text.toStdString();
    EXPECT_TRUE(wrapped(QStringLiteral("0000 00000\u4E00\u4E8C\u4E09\u4E94")).startsWith(QStringLiteral("0000 00000")))
        << "a row may end before an ideograph, not only after the last space";
    EXPECT_FALSE(wrapped(QStringLiteral("\U0001F600").repeated(40)).contains(QChar::ReplacementCharacter));
    EXPECT_EQ(wrapped(QString(5000, u'\u0301')).section(u'|', 0, 0).size(), 1024) << "whatever has no width";
}

// A text that is wrapped in pieces, with what was not measured before and lines of every kind on their edges.
TEST_F(LogRowsTest, AreTheSameInPiecesAsLineByLine) {
    const float width = 10.5F * widths.of('0');
    const QStringList lines = {{},
                               QStringLiteral("0123456789 0123"),
                               QString(3000, u'w'),
                               QStringLiteral("a\r"),
                               QStringLiteral("\U0001F600 \u4E00\u4E8C-\t."),
                               QStringLiteral("word and words")};
    QString string;
    std::vector<std::size_t> expected;
    for (int each = 0; string.size() < 5'000'000; ++each) {
        const bool isRare = each % 5 == 4 && string.size() < 3'000'000;
        const QString line = isRare ? QString(QChar(0x100 + each % 0x1000)) : lines[each * 7 % 6];
        const LogText text = LogText::of(line);
        const LogRows rows(text, widths, width, 28);
        for (const auto& row : rows.rows(0, rows.count())) expected.push_back(std::size_t(string.size()) + row.begin);
        if (line.endsWith(u'\r')) expected.pop_back();  // what follows is no line of its own
        string += line + u'\n';
    }
    for (const bool endsWithLine : {true, false}) {
        endsWithLine ? expected.push_back(std::size_t(string.size())) : (string.chop(1), expected.pop_back());
        const LogText text = LogText::of(string);
        screens::CharacterWidths notMeasured(widths.font());
        const LogRows rows(text, notMeasured, width, 28);
        ASSERT_EQ(rows.count(), expected.size());
        const auto all = rows.rows(0, rows.count());
        for (std::size_t row = 0; row < all.size(); ++row) ASSERT_EQ(all[row].begin, expected[row]) << row;
        for (std::size_t row = 0; row < all.size(); row += 997) {
            ASSERT_EQ(rows.rows(row, 1).front().begin, expected[row]);
            ASSERT_EQ(rows.rowAt(expected[row]), row);
        }
        EXPECT_TRUE(rows.rows(rows.count(), 3).empty());
    }
}

struct LogViewTest : testing::Test {
    void open(const std::optional<std::string>& bytes) {
        if (bytes) device.putBytes(device.files().logFile(), *bytes);
        device.launch();
        device.tapSetting(u"Log");
        view = qobject_cast<screens::VxmLogViewController*>(device.screen())->theTextView();
        bar = view->verticalScrollBar();
    }
    void openLines(int count) {
        std::string text;
        for (int line = 0; line < count; ++line) text += "line " + std::to_string(line) + "\n";
        open(text);
    }
    TestDevice device;
    screens::LogTextView* view = nullptr;
    QScrollBar* bar = nullptr;
};

TEST_F(LogViewTest, TrashDeletesTheFile) {
    open("");
    EXPECT_EQ(view->visibleText(), u"") << "an empty log is one";
    openLines(500);
    bar->setValue(1000);
    view->selectAll();
    for (int each = 0; each < 2; ++each) {
        device.tapButton(u"Delete the log");
        EXPECT_FALSE(std::filesystem::exists(device.files().logFile()));
        EXPECT_EQ(view->visibleText(), u"no content");
        EXPECT_EQ(view->selectedText(), u"");
    }
}

TEST_F(LogViewTest, KeysWheelAndFingerScroll) {
    openLines(5000);
    QTest::keyClick(view, Qt::Key_End);
    EXPECT_TRUE(view->visibleText().endsWith(u"line 4999\n"));
    QTest::keyClick(view, Qt::Key_PageUp);
    EXPECT_FALSE(view->visibleText().contains(u"line 4999"));
    QTest::keyClick(view, Qt::Key_Home);
    EXPECT_TRUE(view->visibleText().startsWith(u"line 0\n"));
    QWidget* rows = view->viewport();
    QWheelEvent wheel({100, 100}, rows->mapToGlobal(QPointF(100, 100)), {}, {0, -120}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(rows, &wheel);
    const int wheeled = bar->value();
    EXPECT_GT(wheeled, 0);

    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    QTest::touchEvent(rows, screen.get()).press(0, {100, 300}, rows);
    for (const int y : {250, 200}) QTest::touchEvent(rows, screen.get()).move(0, {100, y}, rows);
    QTest::qWait(120);  // a finger that rests before it lets go throws nothing
    QTest::touchEvent(rows, screen.get()).release(0, {100, 200}, rows);
    EXPECT_EQ(bar->value(), wheeled + 100);
    EXPECT_EQ(view->selectedText(), u"");
}

TEST_F(LogViewTest, MouseSelectsAndKeysCopy) {
    openLines(5000);
    const int right = view->viewport()->width() - 1;
    device.drag(0, 50, right, 50);
    EXPECT_EQ(view->selectedText(), u"line 0");
    EXPECT_EQ(bar->value(), 0);
    device.drag(right, 80, 0, 50);
    EXPECT_TRUE(view->selectedText().startsWith(u"line 0\nline 1\n"));

    QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), view->selectedText());
    QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(std::size_t(view->selectedText().size()), view->text().size());
}

TEST_F(LogViewTest, StaysAtItsPlaceWhenTheWidthChanges) {
    openLines(20000);
    bar->setValue(bar->maximum() / 2);
    const QString top = view->visibleText().section(u'\n', 1, 1);
    device.window()->resize(60, device.window()->height());
    QApplication::processEvents();
    EXPECT_TRUE(view->visibleText().left(60).contains(top)) << top.toStdString();
}

TEST_F(LogViewTest, IsReadAloudInPiecesOfAnySize) {
    open("first line\nsecond one\n");
    auto* interface = QAccessible::queryAccessibleInterface(view);
    EXPECT_EQ(interface->role(), QAccessible::EditableText);
    EXPECT_TRUE(interface->state().readOnly);
    EXPECT_EQ(interface->text(QAccessible::Value), view->visibleText());
    EXPECT_EQ(interface->text(QAccessible::Name), u"Log");
    auto* read = interface->textInterface();
    ASSERT_TRUE(read);
    EXPECT_EQ(read->characterCount(), 22);
    EXPECT_EQ(read->text(0, -1), u"first line\nsecond one\n");
    using Ask = QString (QAccessibleTextInterface::*)(int, QAccessible::TextBoundaryType, int*, int*) const;
    const std::tuple<Ask, int, QAccessible::TextBoundaryType, const char16_t*, int> cases[] = {
        {&QAccessibleTextInterface::textAtOffset, 13, QAccessible::LineBoundary, u"second one\n", 11},
        {&QAccessibleTextInterface::textBeforeOffset, 13, QAccessible::LineBoundary, u"first line\n", 0},
        {&QAccessibleTextInterface::textAfterOffset, 13, QAccessible::LineBoundary, u"", 22},
        {&QAccessibleTextInterface::textBeforeOffset, 0, QAccessible::LineBoundary, u"", 0},
        {&QAccessibleTextInterface::textAtOffset, 13, QAccessible::WordBoundary, u"second", 11},
        {&QAccessibleTextInterface::textAfterOffset, 8, QAccessible::CharBoundary, u"e", 9},
        {&QAccessibleTextInterface::textAtOffset, 22, QAccessible::CharBoundary, u"", 22},
    };
    for (const auto& [ask, offset, boundary, answer, begin] : cases) {
        int from = -1;
        int to = -1;
        EXPECT_EQ((read->*ask)(offset, boundary, &from, &to), QStringView(answer)) << offset;
        EXPECT_EQ(from, begin) << offset;
        EXPECT_EQ(to, begin + QStringView(answer).size()) << offset;
    }
    read->setSelection(0, 6, 10);
    EXPECT_EQ(view->selectedText(), u"line");
}

}  // namespace
