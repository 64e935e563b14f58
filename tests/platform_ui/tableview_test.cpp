// The table under real presses, drags, wheels and keys.
#include "platform/ui/table/TableView.h"

#include <gtest/gtest.h>

#include <QtTest/qtestspontaneevent.h>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QtTest/QTest>
#include <functional>

#include "platform/ui/controls/Switch.h"
#include "platform/ui/input/HeldPress.h"
#include "platform/ui/motion/AnimationClock.h"
#include "platform/ui/table/TableViewCell.h"

namespace {

using namespace platform;

constexpr int width = 320;
constexpr int height = 500;

class RowCell : public TableViewCell {
public:
    RowCell() : TableViewCell(QStringLiteral("Row")), field(new QLineEdit(contentView())) {
        field->setGeometry(16, 9, 200, 20);
        ++live;
    }
    ~RowCell() override { --live; }

    void setEditing(bool editing, bool animated) override {
        TableViewCell::setEditing(editing, animated);
        field->setEnabled(editing);
    }

    QLineEdit* field;
    static inline int live = 0;
};

// Two fixed rows, then numbered ones that can be deleted; remembers what it was told and every row it should not have
// been asked for.
class Rows : public TableViewDataSource, public TableViewDelegate {
public:
    explicit Rows(int count) : count_(count) {}

    QString textOf(IndexPath path) const {
        if (!news.isEmpty()) return news;
        if (path.section == 0) return QStringLiteral("fixed");
        return QString::number(path.row + (path.row >= removedFrom_ ? 1 : 0));
    }

    int numberOfSectionsInTableView(TableView&) override { return 2; }
    int numberOfRowsInSection(TableView&, int section) override { return section == 0 ? 2 : count_; }
    TableViewCell* cellForRowAtIndexPath(TableView& table, IndexPath path) override {
        ++asked;
        if (path.section > 1 || path.row < 0 || path.row >= numberOfRowsInSection(table, path.section)) ++badIndexes;
        auto* cell = static_cast<RowCell*>(table.dequeueReusableCell(QStringLiteral("Row")));
        if (!cell) {
            cell = new RowCell;
            QObject::connect(cell->field, &QLineEdit::editingFinished, [this, &table, cell] {
                const auto edited = table.indexPathForCell(cell);
                edits.append({edited ? edited->row : -1, cell->field->text()});
                if (reloadsAfterEditing) table.reloadData();
            });
        }
        cell->field->setText(textOf(path));
        return cell;
    }
    bool canEditRowAtIndexPath(TableView&, IndexPath path) override { return path.section == 1; }
    void commitEditingStyle(TableView& table, EditingStyle, IndexPath path) override {
        committed.append(path.row);
        if (!deletes) return;
        remove(path.row);
        table.deleteRow(path, RowAnimation::left);
    }
    void didSelectRowAtIndexPath(TableView& table, IndexPath path) override {
        table.deselectRow(path, false);
        selected.append(path);
    }
    int heightForRowAtIndexPath(TableView&, IndexPath) override { return 50; }
    int heightForFooterInSection(TableView&, int section) override { return section == 0 ? 3 : lastFooterHeight; }
    QWidget* viewForFooterInSection(TableView&, int section) override { return section == 0 ? new QWidget : nullptr; }

    void remove(int row) {
        --count_;
        removedFrom_ = row;
    }
    void restore() {
        ++count_;
        removedFrom_ = INT_MAX;
    }

    QList<IndexPath> selected;
    QList<int> committed;
    QList<std::pair<int, QString>> edits;
    QString news;  // what every row says from now on
    int lastFooterHeight = 0;
    bool deletes = true;
    bool reloadsAfterEditing = false;
    int asked = 0;
    int badIndexes = 0;

private:
    int count_;
    int removedFrom_ = INT_MAX;
};

class TableViewTest : public testing::Test {
protected:
    void SetUp() override { AnimationClock::setInstant(true); }
    void TearDown() override {
        table.reset();
        window.reset();
        EXPECT_EQ(RowCell::live, 0);
        EXPECT_EQ(rows ? rows->badIndexes : 0, 0);
    }

    void show(int count) {
        rows = std::make_unique<Rows>(count);
        window = std::make_unique<QWidget>();
        window->resize(width, height);
        table = std::make_unique<TableView>(window.get());
        table->resize(width, height);
        table->setDataSource(rows.get());
        table->setDelegate(rows.get());
        window->show();
        QApplication::setActiveWindow(window.get());
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    void press(QPoint at) { QTest::mousePress(window->windowHandle(), Qt::LeftButton, {}, at); }
    void moveTo(QPoint at) { QTest::mouseMove(window->windowHandle(), at); }
    void release(QPoint at) { QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {}, at); }
    void tap(QPoint at) {
        press(at);
        release(at);
    }
    // The finger rests before it lets go: however slow the machine, the table is not flung.
    void drag(QPoint from, QPoint to) {
        press(from);
        for (int step = 1; step <= 8; ++step) moveTo(from + (to - from) * step / 8);
        QTest::qWait(120);
        release(to);
    }
    QPoint in(IndexPath path, int x) const { return {x, table->rectForRow(path).center().y()}; }
    RowCell* cell(IndexPath path) const { return static_cast<RowCell*>(table->cellForRow(path)); }
    QPushButton* deleteButton() const {
        for (QPushButton* button : table->findChildren<QPushButton*>())
            if (button->isVisible() && button->accessibleName() == QStringLiteral("Delete")) return button;
        return nullptr;
    }
    std::vector<IndexPath> rowsInSight() const {
        std::vector<IndexPath> paths{{0, 0}, {0, 1}};
        const int first = std::max(0, table->contentOffset() / 50 - 6);
        for (int row = first; row < first + 20; ++row) paths.push_back({1, row});
        std::erase_if(
            paths, [this](IndexPath path) { return !table->rectForRow(path).intersects(table->viewport()->rect()); });
        return paths;
    }
    // Every visible row is where it belongs and shows what its row says.
    void expectExact() const {
        for (const IndexPath path : rowsInSight()) {
            ASSERT_TRUE(cell(path)) << path.section << "/" << path.row;
            EXPECT_EQ(cell(path)->geometry(), table->rectForRow(path));
            EXPECT_TRUE(cell(path)->isVisible());
            EXPECT_EQ(table->indexPathForCell(cell(path)->field), path);
            EXPECT_EQ(cell(path)->field->text(), rows->textOf(path));
        }
    }

    std::unique_ptr<Rows> rows;
    std::unique_ptr<QWidget> window;
    std::unique_ptr<TableView> table;
};

TEST_F(TableViewTest, KeepsFewCellsForAMillionRows) {
    show(1'000'000);
    EXPECT_EQ(table->contentHeight(), 2 * 50 + 3 + 1'000'000 * 50);
    int most = 0;
    for (int offset : {0, 25, 700, 25'000'000, 24'999'990, table->contentHeight(), 49'000'000, 0}) {
        table->setContentOffset(offset);
        expectExact();
        most = std::max(most, RowCell::live);
    }
    EXPECT_LE(most, height / 50 + 6);
    EXPECT_EQ(table->rectForRow({1, 999'999}).top() + table->contentOffset(), 103 + 999'999 * 50);
    const int before = rows->asked;
    table->setContentOffset(10);
    EXPECT_LE(rows->asked - before, 1);
}

TEST_F(TableViewTest, NewsReachesRowsThatAreAboutToComeIntoSight) {
    for (const int way : {-130, -60, -25, 25, 60, 130}) {
        SCOPED_TRACE(way);
        show(100);
        table->setContentOffset(510);
        rows->news = QStringLiteral("news");
        table->forEachCell([this](IndexPath path, TableViewCell& cell) {
            static_cast<RowCell&>(cell).field->setText(rows->textOf(path));
        });
        table->setContentOffset(510 + way);
        expectExact();
        TearDown();
    }
}

TEST_F(TableViewTest, PressBecomesATapAScrollOrASwipe) {
    struct Case {
        const char* what;
        IndexPath row;
        QPoint way;
        bool selects;
        bool scrolls;
        bool uncovers;
    };
    const Case cases[] = {
        {"still", {1, 3}, {0, 0}, true, false, false},
        {"trembling", {1, 3}, {-5, 5}, true, false, false},
        {"up", {1, 3}, {3, -120}, false, true, false},
        {"left", {1, 3}, {-180, 4}, false, false, true},
        {"left on a row that cannot be deleted", {0, 1}, {-180, 4}, false, false, false},
        {"right", {1, 3}, {30, 0}, false, false, false},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.what);
        show(40);
        drag(in(each.row, 280), in(each.row, 280) + each.way);
        EXPECT_EQ(rows->selected.size(), each.selects ? 1 : 0);
        EXPECT_EQ(table->contentOffset(), each.scrolls ? -each.way.y() : 0);
        EXPECT_EQ(deleteButton() != nullptr, each.uncovers);
        TearDown();
    }
}

TEST_F(TableViewTest, PressedRowIsSelectedOnlyWhileItRests) {
    show(40);
    press(in({1, 2}, 300));
    EXPECT_TRUE(cell({1, 2})->isSelected());
    moveTo(in({1, 2}, 300) + QPoint(0, -20));
    EXPECT_FALSE(cell({1, 2})->isSelected());
    release(in({1, 2}, 300));
}

TEST_F(TableViewTest, PressStaysWithItsRowWhenOthersGo) {
    for (const int removed : {2, 4, 6}) {
        SCOPED_TRACE(removed);
        show(40);
        press(in({1, 4}, 300));
        rows->remove(removed);
        table->deleteRow({1, removed}, RowAnimation::left);
        const QPoint finger = in({1, 6}, 300);
        moveTo(finger + QPoint(0, -60));
        release(finger + QPoint(0, -60));
        table->forEachCell(
            [](IndexPath path, const TableViewCell& cell) { EXPECT_FALSE(cell.isSelected()) << path.row; });
        TearDown();
    }
}

TEST_F(TableViewTest, PressWhoseEndWasNeverToldLeavesNothingBehind) {
    show(40);
    press(in({1, 2}, 300));
    tap(in({1, 5}, 300));
    EXPECT_EQ(rows->selected, (QList<IndexPath>{{1, 5}}));
    EXPECT_FALSE(cell({1, 2})->isSelected());
}

TEST_F(TableViewTest, CancelledPressLeavesNothingBehind) {
    for (const QPoint way : {QPoint(0, 0), QPoint(0, -20), QPoint(-120, 0), QPoint(30, 0)}) {
        SCOPED_TRACE(testing::Message() << way.x() << "," << way.y());
        show(40);
        const QPoint from = in({1, 2}, 280);
        press(from);
        moveTo(from + way);
        const int offset = table->contentOffset();
        platform::HeldPress::cancel(*window);
        moveTo(from + way * 2);
        release(from + way * 2);
        EXPECT_EQ(table->contentOffset(), offset);
        EXPECT_FALSE(cell({1, 2})->isSelected());
        EXPECT_FALSE(deleteButton());
        EXPECT_TRUE(rows->selected.isEmpty());
        tap(in({1, 3}, 100));
        EXPECT_EQ(rows->selected, (QList<IndexPath>{{1, 3}}));
        TearDown();
    }
}

TEST_F(TableViewTest, SwipedRowIsDeletedByItsButton) {
    show(40);
    drag(in({1, 3}, 280), in({1, 3}, 100));
    ASSERT_TRUE(deleteButton());
    EXPECT_TRUE(rows->committed.isEmpty());
    tap(in({1, 3}, 290));
    EXPECT_EQ(rows->committed, QList<int>{3});
    EXPECT_FALSE(deleteButton());
    EXPECT_TRUE(rows->selected.isEmpty());
    expectExact();
    table->setContentOffset(1000);
    EXPECT_FALSE(deleteButton()) << "the cell that was uncovered shows another row";
}

TEST_F(TableViewTest, UncoveredDeleteHidesOnWhateverElseHappens) {
    const std::pair<const char*, std::function<void()>> events[] = {
        {"tap elsewhere",
         [this] {
             tap(in({1, 5}, 100));
         }},
        {"tap on the row itself",
         [this] {
             tap(in({1, 3}, 100));
         }},
        {"scroll", [this] { table->setContentOffset(30); }},
        {"escape", [this] { QTest::keyClick(table.get(), Qt::Key_Escape); }},
        {"editing", [this] { table->setEditing(true, true); }},
        {"reload", [this] { table->reloadData(); }},
    };
    for (const auto& [what, happen] : events) {
        SCOPED_TRACE(what);
        show(40);
        drag(in({1, 3}, 280), in({1, 3}, 100));
        ASSERT_TRUE(deleteButton());
        happen();
        EXPECT_FALSE(deleteButton());
        EXPECT_TRUE(rows->selected.isEmpty());
        EXPECT_TRUE(rows->committed.isEmpty());
        TearDown();
    }
}

TEST_F(TableViewTest, EditModeShowsAControlOnRowsThatCanBeDeleted) {
    show(40);
    table->setEditing(true, true);
    table->setContentOffset(5000);
    table->setContentOffset(0);
    EXPECT_EQ(cell({0, 0})->contentView()->x(), 0);
    const int shift = cell({1, 0})->contentView()->x();
    EXPECT_GE(shift, 32);
    EXPECT_LE(shift, 40);
    tap(in({1, 0}, shift / 2));
    ASSERT_TRUE(deleteButton());
    tap(in({1, 0}, 290));
    EXPECT_EQ(rows->committed, QList<int>{0});
    tap(in({1, 2}, 280));
    EXPECT_TRUE(rows->selected.isEmpty());
    table->setAllowsSelectionDuringEditing(true);
    tap(in({1, 2}, 280));
    EXPECT_EQ(rows->selected, (QList<IndexPath>{{1, 2}}));
    table->setEditing(false, true);
    EXPECT_EQ(cell({1, 0})->contentView()->x(), 0);
}

TEST_F(TableViewTest, FieldTakesATapInEditModeAndLeavesTheRestToTheTable) {
    show(40);
    table->setAllowsSelectionDuringEditing(true);
    tap(in({1, 2}, 100) - QPoint(0, 5));
    EXPECT_EQ(rows->selected, (QList<IndexPath>{{1, 2}})) << "a press on a disabled field is one on the row";
    table->setEditing(true, false);
    drag(in({1, 4}, 100) - QPoint(0, 5), in({1, 2}, 100) - QPoint(0, 5));
    EXPECT_EQ(table->contentOffset(), 100);
    EXPECT_FALSE(cell({1, 4})->field->hasFocus());
    tap(in({1, 4}, 100) - QPoint(0, 5));
    EXPECT_TRUE(cell({1, 4})->field->hasFocus());
    tap(in({1, 4}, 120) - QPoint(0, 5));
    EXPECT_TRUE(cell({1, 4})->field->hasFocus());
    EXPECT_EQ(rows->selected.size(), 1);
    table->setFocus();
    QTest::keyClick(table.get(), Qt::Key_Down);
    QTest::keyClick(table.get(), Qt::Key_Return);
    EXPECT_EQ(rows->selected.back(), (IndexPath{1, 5})) << "the keyboard goes on from the row that was edited";
}

TEST_F(TableViewTest, EditingEndsForTheRowItBeganOn) {
    const std::pair<const char*, std::function<void()>> events[] = {
        {"scroll far", [this] { table->setContentOffset(20'000); }},
        {"reload", [this] { table->reloadData(); }},
        {"leave edit mode", [this] { table->setEditing(false, true); }},
        {"delete another row",
         [this] {
             cell({1, 1})->deleteTapped();
         }},
        {"tap elsewhere",
         [this] {
             tap(in({1, 6}, 290));
         }},
    };
    for (const bool reloads : {false, true}) {
        for (const auto& [what, happen] : events) {
            SCOPED_TRACE(what);
            show(1000);
            rows->reloadsAfterEditing = reloads;
            table->setEditing(true, false);
            cell({1, 4})->field->setFocus();
            cell({1, 4})->field->setText(QStringLiteral("typed"));
            happen();
            EXPECT_EQ(rows->edits, (QList<std::pair<int, QString>>{{4, QStringLiteral("typed")}}));
            EXPECT_FALSE(qobject_cast<QLineEdit*>(window->focusWidget()));
            TearDown();
        }
    }
}

TEST_F(TableViewTest, RowsThatComeAndGoEndUpInPlace) {
    const RowAnimation animations[] = {RowAnimation::none, RowAnimation::fade, RowAnimation::left, RowAnimation::right};
    for (const bool instant : {true, false}) {
        AnimationClock::setInstant(instant);
        for (const RowAnimation animation : animations) {
            for (const int offset : {0, 130, 100'000}) {
                show(30);
                table->setContentOffset(offset);
                const int row = offset == 100'000 ? 29 : 4;
                const RowCell* leaving = cell({1, row});
                rows->remove(row);
                table->deleteRow({1, row}, animation);
                EXPECT_EQ(table->contentHeight(), 103 + 29 * 50);
                const bool isLeft = !instant && animation == RowAnimation::left;
                const bool isRight = !instant && animation == RowAnimation::right;
                EXPECT_TRUE(
                    QTest::qWaitFor([&] { return (leaving->x() < 0) == isLeft && (leaving->x() > 0) == isRight; }));
                if (!instant) table->setContentOffset(table->contentOffset() - 7);
                rows->restore();
                table->insertRow({1, row}, animation);
                EXPECT_TRUE(QTest::qWaitFor([&] { return cell({1, row})->geometry() == table->rectForRow({1, row}); }));
                EXPECT_TRUE(QTest::qWaitFor([&] { return !cell({1, row})->graphicsEffect(); }));
                expectExact();
                EXPECT_LE(RowCell::live, height / 50 + 10);
                TearDown();
            }
        }
    }
}

TEST_F(TableViewTest, CountsThatDoNotAgreeReload) {
    show(30);
    rows->remove(3);
    rows->remove(3);
    table->deleteRow({1, 3}, RowAnimation::left);
    EXPECT_EQ(table->contentHeight(), 103 + 28 * 50);
    expectExact();
}

TEST_F(TableViewTest, FirstAndLastRowOfASectionComeAndGo) {
    show(1);
    rows->remove(0);
    table->deleteRow({1, 0}, RowAnimation::fade);
    EXPECT_EQ(table->contentHeight(), 103);
    rows->restore();
    table->insertRow({1, 0}, RowAnimation::fade);
    EXPECT_EQ(table->rectForRow({1, 0}), QRect(0, 103, width, 50));
    expectExact();
}

TEST_F(TableViewTest, KeysReachEveryRowAndDoWhatAFingerDoes) {
    struct Case {
        Qt::Key key;
        IndexPath lands;
    };
    const Case cases[] = {
        {Qt::Key_Down, {0, 0}}, {Qt::Key_Down, {0, 1}},     {Qt::Key_Down, {1, 0}},
        {Qt::Key_Up, {0, 1}},   {Qt::Key_End, {1, 99'999}}, {Qt::Key_Up, {1, 99'998}},
        {Qt::Key_Home, {0, 0}}, {Qt::Key_PageDown, {1, 7}}, {Qt::Key_PageUp, {0, 0}},
    };
    show(100'000);
    for (const Case& each : cases) {
        QTest::keyClick(table.get(), each.key);
        EXPECT_TRUE(table->rect().contains(table->rectForRow(each.lands)));
        QTest::keyClick(table.get(), Qt::Key_Return);
        ASSERT_FALSE(rows->selected.isEmpty());
        EXPECT_EQ(rows->selected.takeLast(), each.lands);
    }
    QTest::keyClick(table.get(), Qt::Key_Delete);
    EXPECT_FALSE(deleteButton()) << "a fixed row";
    for (int step = 0; step < 4; ++step) QTest::keyClick(table.get(), Qt::Key_Down);
    for (const Qt::Key confirm : {Qt::Key_Delete, Qt::Key_Return}) {
        QTest::keyClick(table.get(), Qt::Key_Delete);
        ASSERT_TRUE(deleteButton());
        QTest::keyClick(table.get(), confirm);
    }
    EXPECT_EQ(rows->committed, (QList<int>{2, 2}));
    rows->remove(0);
    table->deleteRow({1, 0}, RowAnimation::left);
    QTest::keyClick(table.get(), Qt::Key_Return);
    EXPECT_EQ(rows->selected.takeLast(), (IndexPath{1, 1})) << "the keyboard stays on its row when one above goes";
}

TEST_F(TableViewTest, KeysShowWhatLiesBeyondTheFirstAndTheLastRow) {
    constexpr int headerHeight = 82;
    constexpr int top = 0;
    constexpr int bottom = headerHeight + 103 + 40 * 50 + 20 - height;
    const struct {
        const char* what;
        std::vector<Qt::Key> way;
        Qt::Key key;
        int offset;
    } cases[] = {
        {"Home", {Qt::Key_PageDown, Qt::Key_PageDown}, Qt::Key_Home, top},
        {"End", {}, Qt::Key_End, bottom},
        {"Page Up onto the first row", {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Down}, Qt::Key_PageUp, top},
        {"Page Down onto the last row", {Qt::Key_End, Qt::Key_Up, Qt::Key_Up}, Qt::Key_PageDown, bottom},
        {"Up onto the first row", {Qt::Key_Down}, Qt::Key_Up, top},
        {"Up on the first row", {}, Qt::Key_Up, top},
        {"Down onto the last row", {Qt::Key_End, Qt::Key_Up}, Qt::Key_Down, bottom},
        {"Down on the last row", {Qt::Key_End}, Qt::Key_Down, bottom},
        {"Up onto the second row", {Qt::Key_Down, Qt::Key_Down}, Qt::Key_Up, headerHeight},
    };
    for (const auto& [what, way, key, offset] : cases) {
        SCOPED_TRACE(what);
        show(40);
        rows->lastFooterHeight = 20;
        auto* header = new QWidget;
        header->resize(width, headerHeight);
        table->setHeaderView(header);
        table->reloadData();
        QTest::keyClick(table.get(), Qt::Key_Home);
        for (const Qt::Key step : way) QTest::keyClick(table.get(), step);
        // Just so far that the row the key is pressed on stays in sight.
        table->setContentOffset(table->contentOffset() < bottom / 2 ? headerHeight : bottom - 20);
        QTest::keyClick(table.get(), key);
        EXPECT_EQ(table->contentOffset(), offset);
        TearDown();
    }
}

TEST_F(TableViewTest, TabWalksTheControlsFromTopToBottomAndLeaves) {
    show(3);
    auto* after = new QLineEdit(window.get());
    after->setGeometry(0, 0, 10, 10);
    after->show();
    auto* lower = new Switch;
    auto* upper = new Switch;
    cell({1, 2})->setAccessoryView(lower);
    cell({1, 0})->setAccessoryView(upper);
    EXPECT_EQ(lower->mapTo(cell({1, 2}), QPoint(lower->width(), 0)).x(), width - 10);
    table->setFocus(Qt::TabFocusReason);
    const QList<QWidget*> order{upper, lower, after};
    for (QWidget* next : order) {
        QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(window->focusWidget(), next);
    }
    lower->setFocus();
    QTest::keyClick(lower, Qt::Key_Space);
    QTest::keyClick(lower, Qt::Key_Backtab);
    EXPECT_EQ(window->focusWidget(), upper);
    EXPECT_TRUE(lower->isOn());
    EXPECT_TRUE(rows->selected.isEmpty());
}

TEST_F(TableViewTest, WheelScrollsByPixelsOrThreeRowsANotch) {
    show(100);
    const struct {
        QPoint pixels;
        QPoint angle;
        int offset;
    } cases[] = {{{}, {0, -120}, 150}, {{0, -13}, {0, -120}, 163}, {{}, {0, 240}, 0}, {{}, {0, 120}, 0}};
    for (const auto& each : cases) {
        QWheelEvent event(QPointF(50, 50), window->mapToGlobal(QPointF(50, 50)), each.pixels, each.angle, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event);  // only the person's own wheel is passed on by the rows
        qApp->notify(window->windowHandle(), &event);
        EXPECT_EQ(table->contentOffset(), each.offset);
    }
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
    EXPECT_TRUE(rows->selected.isEmpty());
}

TEST_F(TableViewTest, HeaderAndFooterTakeTheirRoom) {
    show(40);
    auto* header = new QWidget;
    header->resize(10, 38);
    table->setHeaderView(header);
    EXPECT_EQ(table->rectForRow({1, 0}).top(), 38 + 100 + 3);
    table->setContentOffset(20);
    EXPECT_EQ(header->geometry(), QRect(0, -20, width, 38));
    header->resize(width, 82);
    EXPECT_EQ(table->rectForRow({0, 0}).top(), 82 - 20);
    table->scrollToRow({1, 39});
    EXPECT_EQ(table->rectForRow({1, 39}).bottom() + 1, height);
    window->resize(412, height);
    table->resize(412, height);
    expectExact();
}

TEST_F(TableViewTest, SelectionAndReloadKeepTheirPlaces) {
    show(1000);
    table->setContentOffset(2000);
    table->reloadData();
    EXPECT_EQ(table->contentOffset(), 2000);
    expectExact();
    for (int removed = 0; removed < 990; ++removed) rows->remove(0);
    table->reloadData();
    EXPECT_EQ(table->contentOffset(), 103 + 10 * 50 - height);
    expectExact();
}

}  // namespace
