// The table under real presses, drags, wheels and keys.
#include <QtTest/qtestspontaneevent.h>
#include <functional>

#include "platform/ui/controls/Switch.h"
#include "platform/ui/input/HeldPress.h"
#include "platform_ui/TableTest.h"

namespace {

using namespace Qt::StringLiterals;
using namespace platform;

struct TableViewTest : TableTest {
    static constexpr int controlWidth = 36;

    // The numbered rows; -2 and -1 are the fixed ones.
    static IndexPath path(int row) { return row < 0 ? IndexPath{0, row + 2} : IndexPath{1, row}; }
    RowCell* cell(int row) const { return static_cast<RowCell*>(table->cellForRow(path(row))); }
    // At 280 there is nothing but the row, at 100 its field, at 18 its delete control, at 300 its "Delete".
    QPoint at(int row, int x = 280) const { return {x, table->rectForRow(path(row)).center().y()}; }
    void tapRow(int row, int x = 280) { tap(at(row, x)); }

    void swipe(int row) { drag(at(row), QPoint(-180, 4)); }
    void cancelPress(QPoint way) {
        const QPoint from = at(2);
        press(from);
        moveTo(from + way);
        HeldPress::cancel(*window);
        moveTo(from + way * 2);
        release(from + way * 2);
    }
    void loseRow(int row) {
        rows->remove(row);
        table->deleteRow(path(row), RowAnimation::left);
    }
    void loseRowWhilePressed(int row) {
        press(at(4));
        loseRow(row);
        const QPoint finger = at(6) - QPoint(0, 60);
        moveTo(finger);
        release(finger);
    }
    void edit(bool selects = false) {
        table->setAllowsSelectionDuringEditing(selects);
        table->setEditing(true, true);
    }
    void type() {
        edit(true);
        cell(4)->field->setFocus();
        cell(4)->field->setText(u"word"_s);
    }
    void scroll(int offset) { table->setContentOffset(offset); }
    // Besides keys: "nudge" scrolls just so far that the current row stays in sight, "lose" takes the first numbered
    // row.
    void keys(const QString& script) {
        if (!window->focusWidget()) table->setFocus();
        for (const QString& name : script.split(u' ')) {
            if (name == u"nudge") {
                scroll(table->contentOffset() < 800 ? 82 : 1685);
            } else if (name == u"lose") {
                loseRow(0);
            } else {
                WindowTest::keys(name);
            }
        }
    }
    void expectAfterKeys(const char* script, const char* expected) {
        SCOPED_TRACE(script);
        show(40);
        rows->lastFooterHeight = 20;
        addHeader(82);
        table->reloadData();
        keys(QString::fromLatin1(script));
        EXPECT_EQ(outcome(), expected);
    }
    QWidget* addHeader(int height) {
        auto* header = new QWidget;
        header->resize(10, height);
        table->setHeaderView(header);
        return header;
    }
    void wheel(QPoint pixels, int angle) {
        QWheelEvent event(QPointF(50, 50), window->mapToGlobal(QPointF(50, 50)), pixels, QPoint(0, angle), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event);  // only the person's own wheel is passed on by the rows
        qApp->notify(window->windowHandle(), &event);
    }

    // Every visible row is where it belongs and shows what its row says.
    void expectExact() const {
        const QWidget* header = table->headerView();
        const int top = header ? header->height() : 0;
        EXPECT_TRUE(!header || header->geometry() == QRect(0, -table->contentOffset(), table->width(), top));
        EXPECT_EQ(table->contentHeight(), top + Rows::heightOf(rows->count) + rows->lastFooterHeight);
        const int above = table->contentOffset() / 50 - 8;
        for (int row = above; row < above + 20; ++row) {
            if (!table->rectForRow(path(row)).intersects(table->viewport()->rect())) continue;
            ASSERT_TRUE(cell(row)) << row;
            EXPECT_EQ(cell(row)->geometry(), table->rectForRow(path(row)));
            EXPECT_TRUE(cell(row)->isVisible());
            EXPECT_EQ(table->indexPathForCell(cell(row)->field), path(row));
            EXPECT_EQ(cell(row)->field->text(), rows->textOf(path(row)));
            if (cell(row)->isOpeningAside()) continue;
            EXPECT_EQ(cell(row)->contentView()->x(), row >= 0 && table->isEditing() ? controlWidth : 0) << row;
        }
    }
    // What the rows were told, and what there is to see: pressed rows, "Delete", a field in use, the content's offset.
    std::string outcome() const {
        expectExact();
        QStringList parts = rows->told;
        table->forEachCell([&parts](IndexPath path, const TableViewCell& cell) {
            if (cell.isSelected()) parts += u"pressed %1"_s.arg(path.row);
        });
        for (const QPushButton* button : table->findChildren<QPushButton*>())
            if (button->isVisible() && button->accessibleName() == u"Delete") parts += u"open"_s;
        const auto* field = qobject_cast<QLineEdit*>(window->focusWidget());
        if (field) parts += u"editing %1"_s.arg(table->indexPathForCell(field)->row);
        if (table->contentOffset() != 0) parts += u"at %1"_s.arg(table->contentOffset());
        return parts.join(u", ").toStdString();
    }
};

TEST_F(TableViewTest, KeepsFewCellsForAMillionRows) {
    show(1'000'000);
    int most = 0;
    for (int offset : {0, 25, 700, 25'000'000, 24'999'990, table->contentHeight(), 49'000'000, 0}) {
        scroll(offset);
        expectExact();
        most = std::max(most, RowCell::live);
    }
    EXPECT_LE(most, window->height() / 50 + 6);
    EXPECT_EQ(table->rectForRow({1, 999'999}).top(), Rows::heightOf(999'999));
    const int before = rows->asked;
    scroll(10);
    EXPECT_LE(rows->asked - before, 1);
}

TEST_F(TableViewTest, NewsReachesRowsThatAreAboutToComeIntoSight) {
    for (const int way : {-130, -60, -25, 25, 60, 130}) {
        SCOPED_TRACE(way);
        show(100);
        scroll(510);
        rows->news = u"news"_s;
        table->forEachCell([this](IndexPath path, TableViewCell& cell) {
            static_cast<RowCell&>(cell).field->setText(rows->textOf(path));
        });
        scroll(510 + way);
        expectExact();
    }
}

TEST_F(TableViewTest, AnswersToTheFinger) {
    const std::tuple<const char*, std::function<void()>, const char*> cases[] = {
        {"tap", [this] { tapRow(3); }, "selected 3"},
        {"trembling tap", [this] { drag(at(3), QPoint(-5, 5)); }, "selected 3"},
        {"tap on a field that is not edited", [this] { tapRow(2, 100); }, "selected 2"},
        {"press", [this] { press(at(2)); }, "pressed 2"},
        {"press whose end was never told, tap", [this] { press(at(2)), tapRow(5); }, "selected 5"},
        {"press that moves", [this] { press(at(2)), moveTo(at(2) - QPoint(0, 20)); }, "at 20"},
        {"cancelled press", [this] { cancelPress(QPoint(0, 0)); }, ""},
        {"cancelled press, tap", [this] { cancelPress(QPoint(0, 0)), tapRow(3); }, "selected 3"},
        {"cancelled scroll", [this] { cancelPress(QPoint(0, -20)); }, "at 20"},
        {"cancelled swipe", [this] { cancelPress(QPoint(-120, 0)); }, ""},
        {"cancelled swipe, tap", [this] { cancelPress(QPoint(-120, 0)), tapRow(3); }, "selected 3"},
        {"cancelled drag to the right", [this] { cancelPress(QPoint(15, 0)); }, ""},
        {"press while a row above goes", [this] { loseRowWhilePressed(2); }, ""},
        {"press while its row goes", [this] { loseRowWhilePressed(4); }, ""},
        {"press while a row below goes", [this] { loseRowWhilePressed(6); }, ""},
        {"scroll", [this] { drag(at(3), QPoint(3, -120)); }, "at 120"},
        {"wheel", [this] { wheel(QPoint(), -120); }, "at 150"},
        {"wheel that knows pixels", [this] { wheel(QPoint(0, -13), -120); }, "at 13"},
        {"wheel beyond the top", [this] { wheel(QPoint(), -120), wheel(QPoint(), 240); }, ""},
        {"drag to the right", [this] { drag(at(3), QPoint(30, 0)); }, ""},
        {"swipe", [this] { swipe(3); }, "open"},
        {"slanting swipe", [this] { drag(at(3), QPoint(-180, -90)); }, "open"},
        {"swipe on a row that cannot be deleted", [this] { swipe(-1); }, ""},
        {"swipe, tap on Delete", [this] { swipe(3), tapRow(3, 300); }, "deleted 3"},
        {"its cell shows another row", [this] { swipe(3), tapRow(3, 300), scroll(900); }, "deleted 3, at 900"},
        {"swipe, tap elsewhere", [this] { swipe(3), tapRow(5, 100); }, ""},
        {"swipe, tap on the row itself", [this] { swipe(3), tapRow(3, 100); }, ""},
        {"swipe, scroll", [this] { swipe(3), scroll(30); }, "at 30"},
        {"swipe, Escape", [this] { swipe(3), keys(u"Esc"_s); }, ""},
        {"swipe, edit mode", [this] { swipe(3), edit(); }, ""},
        {"swipe, reload", [this] { swipe(3), table->reloadData(); }, ""},
        {"edit mode, delete control", [this] { edit(), tapRow(0, 18); }, "open"},
        {"edit mode, delete control, Delete", [this] { edit(), tapRow(0, 18), tapRow(0, 300); }, "deleted 0"},
        {"edit mode, where a control would be", [this] { edit(), tapRow(-1, 8); }, ""},
        {"edit mode, tap", [this] { edit(), tapRow(2); }, ""},
        {"edit mode with selection, tap", [this] { edit(true), tapRow(2); }, "selected 2"},
        {"edit mode, scroll on a field", [this] { edit(), drag(at(4, 100), QPoint(0, -100)); }, "at 100"},
        {"edit mode, tap on a field", [this] { edit(true), tapRow(4, 100); }, "editing 4"},
        {"another tap on it", [this] { edit(true), tapRow(4, 100), tapRow(4, 120); }, "editing 4"},
        {"typing, scroll far", [this] { type(), scroll(1000); }, "typed word into 4, at 1000"},
        {"typing, reload", [this] { type(), table->reloadData(); }, "typed word into 4"},
        {"typing, end of edit mode", [this] { type(), table->setEditing(false, true); }, "typed word into 4"},
        {"typing, another row is deleted", [this] { type(), cell(1)->deleteTapped(); }, "typed word into 4, deleted 1"},
        {"typing, tap elsewhere", [this] { type(), tapRow(6); }, "typed word into 4, selected 6"},
        {"typing, keys", [this] { type(), keys(u"Down Return"_s); }, "typed word into 4, selected 5"},
        {"edit mode, there and back", [this] { edit(), scroll(900), scroll(0); }, ""},
        {"end of edit mode", [this] { edit(), table->setEditing(false, true); }, ""},
        {"reload", [this] { scroll(500), table->reloadData(); }, "at 500"},
        {"reload with fewer rows", [this] { scroll(900), rows->count = 10, table->reloadData(); }, "at 103"},
        {"header", [this] { addHeader(38), scroll(20); }, "at 20"},
        {"header that grows", [this] { addHeader(38)->resize(320, 82), table->scrollToRow(path(39)); }, "at 1685"},
        {"wider table", [this] { table->resize(412, 500); }, ""},
        {"row goes under a finger that rests", [this] { press(at(4)), loseRow(4), release(at(4)); }, ""},
        {"counts that do not agree", [this] { rows->remove(3), loseRow(3); }, ""},
    };
    for (const bool reloads : {false, true}) {
        for (const auto& [what, happen, expected] : cases) {
            SCOPED_TRACE(what);
            show(40);
            rows->reloadsAfterEditing = reloads;
            happen();
            EXPECT_EQ(outcome(), expected);
        }
    }
}

TEST_F(TableViewTest, AnswersToKeys) {
    const std::pair<const char*, std::vector<const char*>> cases[] = {
        {"selected fixed 0", {"Down Return", "End Home Return", "Home PgDown PgUp Return"}},
        {"selected fixed 1", {"Down Down Down Up Return"}},
        {"selected 0", {"Down Down Down Return"}},
        {"selected 1", {"Home Down Down Down Down lose Return"}},
        {"selected 7, at 85", {"Home PgDown Return"}},
        {"selected 38, at 1705", {"End Up Return"}},
        {"selected 39, at 1705", {"End Return"}},
        {"open", {"Home Down Down Del"}},
        {"deleted 0", {"Home Down Down Del Del", "Home Down Down Del Return"}},
        {"at 82", {"Home Down Down nudge Up"}},
        {"at 1705", {"Home nudge End", "End Up Up nudge PgDown", "End nudge Down"}},
        {"", {"Home Del", "Home PgDown PgDown nudge Home", "Home Down Down Down Down nudge PgUp", "Home nudge Up"}},
    };
    for (const auto& [expected, scripts] : cases)
        for (const char* script : scripts) expectAfterKeys(script, expected);
}

TEST_F(TableViewTest, RowsThatComeAndGoEndUpInPlace) {
    struct Place {
        int count, offset, row;
    };
    for (const bool instant : {true, false}) {
        AnimationClock::setInstant(instant);
        for (const auto way : {RowAnimation::none, RowAnimation::fade, RowAnimation::left, RowAnimation::right}) {
            for (const auto& [count, offset, row] :
                 {Place{30, 0, 4}, Place{30, 130, 4}, Place{30, 100'000, 29}, Place{1, 0, 0}}) {
                show(count);
                scroll(offset);
                const RowCell* leaving = cell(row);
                rows->remove(row);
                table->deleteRow(path(row), way);
                EXPECT_EQ(table->contentHeight(), Rows::heightOf(count - 1));
                const int side = instant ? 0 : way == RowAnimation::left ? -1 : way == RowAnimation::right ? 1 : 0;
                EXPECT_TRUE(QTest::qWaitFor([&] { return side == (leaving->x() > 0) - (leaving->x() < 0); }));
                if (!instant) scroll(table->contentOffset() - 7);
                rows->restore();
                table->insertRow(path(row), way);
                const RowCell* coming = cell(row);
                EXPECT_TRUE(QTest::qWaitFor([&, where = path(row)] {
                    return coming->geometry() == table->rectForRow(where) && !coming->graphicsEffect();
                }));
                expectExact();
                EXPECT_LE(RowCell::live, window->height() / 50 + 10);
            }
        }
    }
}

TEST_F(TableViewTest, TabWalksTheControlsFromTopToBottomAndLeaves) {
    show(3);
    auto* after = new QLineEdit(window.get());
    after->setGeometry(0, 0, 10, 10);
    after->show();
    auto* lower = new Switch;
    auto* upper = new Switch;
    cell(2)->setAccessoryView(lower);
    cell(0)->setAccessoryView(upper);
    EXPECT_EQ(lower->mapTo(cell(2), QPoint(lower->width(), 0)).x(), window->width() - 10);
    table->setFocus(Qt::TabFocusReason);
    for (QWidget* next : QList<QWidget*>{upper, lower, after}) {
        keys(u"Tab"_s);
        EXPECT_EQ(window->focusWidget(), next);
    }
    lower->setFocus();
    keys(u"Space Backtab"_s);
    EXPECT_EQ(window->focusWidget(), upper);
    EXPECT_TRUE(lower->isOn());
    EXPECT_TRUE(rows->told.isEmpty());
}

TEST_F(TableViewTest, AFlingGoesOnAndAPressStopsItWithoutSelecting) {
    AnimationClock::setInstant(false);
    show(10'000);
    press({100, 400});
    for (int y = 390; y >= 200; y -= 10) {
        moveTo({100, y});
        QTest::qWait(4);
    }
    release({100, 200});
    const int letGoAt = table->contentOffset();
    EXPECT_TRUE(QTest::qWaitFor([&] { return table->contentOffset() > letGoAt + 20; }));
    tap({100, 200});
    const int stoppedAt = table->contentOffset();
    QTest::qWait(60);
    EXPECT_EQ(table->contentOffset(), stoppedAt);
    EXPECT_TRUE(rows->told.isEmpty());
}

}  // namespace
