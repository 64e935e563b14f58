// Searching by keyboard and mouse.
#include "platform/ui/search/SearchDisplayController.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QScrollBar>
#include <QtTest/QTest>

#include "platform/ui/motion/AnimationClock.h"
#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"

namespace {

using namespace platform;

class Words : public TableViewDataSource, public TableViewDelegate, public SearchDisplayDelegate {
public:
    int numberOfRowsInSection(TableView& table, int) override {
        return static_cast<int>(&table == contents ? all.size() : found.size());
    }
    TableViewCell* cellForRowAtIndexPath(TableView& table, IndexPath path) override {
        if (path.row >= numberOfRowsInSection(table, path.section)) ++badRows;
        TableViewCell* cell = table.dequeueReusableCell(QStringLiteral("Cell"));
        return cell ? cell : new TableViewCell(QStringLiteral("Cell"));
    }
    void didSelectRowAtIndexPath(TableView& table, IndexPath path) override {
        table.deselectRow(path, false);
        if (&table != contents) chosen.append(found.value(path.row));
    }
    bool shouldReloadTableForSearchString(SearchDisplayController&, const QString& text) override {
        found = all.filter(text);
        return true;
    }
    void willBeginSearch(SearchDisplayController&) override { calls += u'b'; }
    void willShowSearchResultsTableView(SearchDisplayController&, TableView&) override { calls += u'+'; }
    void willUnloadSearchResultsTableView(SearchDisplayController&, TableView&) override { calls += u'-'; }

    TableView* contents = nullptr;
    QStringList all;
    QStringList found;
    QStringList chosen;
    QString calls;
    int badRows = 0;
};

// Counts the Escapes that nobody took: those would leave the screen.
class Window : public QWidget {
public:
    int escapes = 0;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape) ++escapes;
    }
};

class SearchTest : public testing::Test {
protected:
    void SetUp() override {
        AnimationClock::setInstant(true);
        for (int word = 0; word < 100; ++word) words.all.append(QStringLiteral("word%1").arg(word));
        window.resize(320, 500);
        table = new TableView(&window);
        table->setGeometry(0, 40, 320, 460);
        words.contents = table;
        bar = new SearchBar;
        table->setHeaderView(bar);
        table->setDataSource(&words);
        table->setDelegate(&words);
        search = std::make_unique<SearchDisplayController>(bar, table);
        search->setDelegate(&words);
        search->setSearchResultsDataSource(&words);
        search->setSearchResultsDelegate(&words);
        window.show();
        QApplication::setActiveWindow(&window);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void type(const char* text) {
        bar->field()->setFocus();
        QTest::keyClicks(bar->field(), QString::fromLatin1(text));
    }
    TableView* results() const { return search->searchResultsTableView(); }
    void expectEnded() const {
        EXPECT_FALSE(search->isActive());
        EXPECT_FALSE(results()->isVisible());
        EXPECT_TRUE(bar->text().isEmpty());
        EXPECT_FALSE(bar->field()->hasFocus());
        EXPECT_EQ(words.calls, QStringLiteral("b+-"));
    }

    Words words;
    Window window;
    TableView* table = nullptr;
    SearchBar* bar = nullptr;
    std::unique_ptr<SearchDisplayController> search;
};

TEST_F(SearchTest, ResultsLieBelowTheBarWhileThereIsText) {
    table->setContentOffset(10);
    type("word7");
    EXPECT_TRUE(search->isActive());
    ASSERT_TRUE(results()->isVisible());
    EXPECT_EQ(table->contentOffset(), 0);
    EXPECT_EQ(results()->geometry(), QRect(0, 40 + bar->height(), 320, 460 - bar->height()));
    EXPECT_EQ(results()->contentHeight(), 11 * 50);
    table->setContentOffset(300);
    EXPECT_EQ(table->contentOffset(), 0) << "the bar stays over its results";
    QTest::keyClick(bar->field(), Qt::Key_Backspace);
    EXPECT_EQ(results()->contentHeight(), 100 * 50);
    bar->setText(QString());
    EXPECT_FALSE(results()->isVisible());
    EXPECT_TRUE(search->isActive());
    type("x");
    EXPECT_EQ(words.calls, QStringLiteral("b+-+"));
    EXPECT_EQ(results()->contentHeight(), 0);
}

TEST_F(SearchTest, ResultsThatStillMoveWhenTheyGoAskForNoMoreRows) {
    type("word");
    results()->setContentOffset(2000);
    words.all.clear();
    bar->setText(QString());
    for (const int offset : {2400, 4000, 0}) results()->verticalScrollBar()->setValue(offset);  // as a fling does
    EXPECT_EQ(words.badRows, 0);
}

TEST_F(SearchTest, EndsByEveryWayOut) {
    const std::pair<const char*, std::function<void()>> ways[] = {
        {"escape in the field", [this] { QTest::keyClick(bar->field(), Qt::Key_Escape); }},
        {"escape in the results",
         [this] {
             QTest::keyClick(bar->field(), Qt::Key_Down);
             ASSERT_TRUE(results()->hasFocus());
             QTest::keyClick(results(), Qt::Key_Escape);
         }},
        {"cancel",
         [this] {
             for (auto* button : bar->findChildren<QAbstractButton*>())
                 if (button->accessibleName() == QStringLiteral("Cancel"))
                     QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                                       button->mapTo(&window, button->rect().center()));
         }},
        {"the screen", [this] { search->setActive(false, false); }},
    };
    for (const auto& [what, leave] : ways) {
        SCOPED_TRACE(what);
        words.calls.clear();
        type("word");
        ASSERT_TRUE(results()->isVisible());
        leave();
        expectEnded();
        EXPECT_EQ(window.escapes, 0);
    }
}

TEST_F(SearchTest, KeysGoFromTheFieldToTheResultsAndChoose) {
    type("word42");
    QTest::keyClick(bar->field(), Qt::Key_Down);
    QTest::keyClick(window.focusWidget(), Qt::Key_Return);
    EXPECT_EQ(words.chosen, QStringList{QStringLiteral("word42")});
    EXPECT_TRUE(search->isActive());
}

TEST_F(SearchTest, TabGoesRoundInReadingOrderAndNotBelowTheResults) {
    auto* belowTheBar = new QLineEdit;
    table->cellForRow({0, 0})->setAccessoryView(belowTheBar);
    type("word42");
    QStringList reached;
    for (int step = 0; step < 4; ++step) {
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
        const QWidget* at = window.focusWidget();
        reached += at == results() ? QStringLiteral("results")
                   : at == table   ? QStringLiteral("covered")
                                   : at->accessibleName();
    }
    EXPECT_EQ(reached.join(u' '), QStringLiteral("Cancel results Search Cancel"));
    QTest::keyClick(window.focusWidget(), Qt::Key_Escape);  // on "Cancel"
    expectEnded();
    EXPECT_TRUE(table->hasFocus());
    QTest::keyClick(table, Qt::Key_Tab);
    EXPECT_TRUE(belowTheBar->hasFocus()) << "nothing lies over the rows any more";
}

}  // namespace
