// Searching by keyboard and mouse.
#include "platform/ui/search/SearchDisplayController.h"

#include <functional>

#include "platform/ui/accessibility/Accessibility.h"
#include "platform_ui/TableTest.h"

namespace {

using namespace Qt::StringLiterals;
using namespace platform;

// Over a hundred numbered rows, of which those are found whose number contains what was typed.
struct SearchTest : TableTest, SearchDisplayDelegate {
    void SetUp() override {
        installAccessibility();
        show(100);
        table->setGeometry(0, 40, 320, 460);
        auto* header = new QWidget;
        header->resize(320, 82);
        bar = new SearchBar(header);
        bar->resize(320, bar->height());
        table->setHeaderView(header);
        search = std::make_unique<SearchDisplayController>(bar, table.get());
        search->setDelegate(this);
        search->setSearchResultsDataSource(&found);
        search->setSearchResultsDelegate(&found);
    }
    void TearDown() override {
        search.reset();
        close();
        EXPECT_EQ(found.badIndexes, 0);
    }

    bool shouldReloadTableForSearchString(SearchDisplayController&, const QString& text) override {
        found.count = 0;
        for (int row = 0; row < rows->count; ++row) found.count += QString::number(row).contains(text) ? 1 : 0;
        return true;
    }
    void willBeginSearch(SearchDisplayController&) override { calls += u'b'; }
    void willShowSearchResultsTableView(SearchDisplayController&, TableView&) override { calls += u'+'; }
    void willUnloadSearchResultsTableView(SearchDisplayController&, TableView&) override { calls += u'-'; }

    void type(const QString& text) {
        bar->field()->setFocus();
        QTest::keyClicks(bar->field(), text);
    }
    TableView* results() const { return search->searchResultsTableView(); }
    void expectEnded() const {
        EXPECT_FALSE(search->isActive());
        EXPECT_FALSE(results()->isVisible());
        EXPECT_EQ(read(table.get())->childCount(), 2);
        EXPECT_TRUE(bar->text().isEmpty());
        EXPECT_FALSE(bar->field()->hasFocus());
        EXPECT_EQ(calls, u"b+-"_s);
        EXPECT_EQ(window->escapes, 0);
    }

    Rows found{0};
    QString calls;
    SearchBar* bar = nullptr;
    std::unique_ptr<SearchDisplayController> search;
};

TEST_F(SearchTest, ResultsLieBelowTheBarWhileThereIsText) {
    table->setContentOffset(10);
    type(u"7"_s);
    EXPECT_TRUE(search->isActive());
    ASSERT_TRUE(results()->isVisible());
    EXPECT_EQ(read(table.get())->childCount(), 1);
    EXPECT_EQ(read(table.get())->child(0), read(bar)) << "what lies below the results is not read";
    EXPECT_EQ(table->contentOffset(), 0);
    EXPECT_EQ(results()->geometry(), QRect(0, 40 + bar->height(), 320, 460 - bar->height()));
    EXPECT_EQ(results()->contentHeight(), Rows::heightOf(19));
    table->setContentOffset(300);
    EXPECT_EQ(table->contentOffset(), 0) << "the bar stays over its results";
    type(u"3"_s);
    EXPECT_EQ(results()->contentHeight(), Rows::heightOf(1));
    bar->setText(QString());
    EXPECT_FALSE(results()->isVisible());
    EXPECT_TRUE(search->isActive());
    type(u"x"_s);
    EXPECT_EQ(calls, u"b+-+"_s);
    EXPECT_EQ(results()->contentHeight(), Rows::heightOf(0));
}

TEST_F(SearchTest, ResultsThatStillMoveWhenTheyGoAskForNoMoreRows) {
    for (int row = 0; row < 900; ++row) rows->restore();
    type(u"1"_s);
    results()->setContentOffset(2000);
    rows->count = 0;
    bar->setText(QString());
    for (const int offset : {2400, 4000, 0}) results()->verticalScrollBar()->setValue(offset);  // as a fling does
    EXPECT_EQ(found.badIndexes, 0);
}

TEST_F(SearchTest, EndsByEveryWayOut) {
    const std::pair<const char*, std::function<void()>> ways[] = {
        {"escape in the field", [this] { keys(u"Esc"_s); }},
        {"escape in the results", [this] { keys(u"Down Esc"_s); }},
        {"cancel", [this] { tap(table->pos() + QPoint(300, 19)); }},
        {"the screen", [this] { search->setActive(false, false); }},
    };
    for (const auto& [what, leave] : ways) {
        SCOPED_TRACE(what);
        calls.clear();
        type(u"4"_s);
        ASSERT_TRUE(results()->isVisible());
        leave();
        expectEnded();
    }
}

TEST_F(SearchTest, TabGoesRoundInReadingOrderAndNotBelowTheResults) {
    auto* belowTheBar = new QLineEdit;
    table->cellForRow({0, 0})->setAccessoryView(belowTheBar);
    type(u"42"_s);
    QStringList reached;
    for (int step = 0; step < 4; ++step) {
        keys(u"Tab"_s);
        reached += window->focusWidget()->accessibleName();
    }
    EXPECT_EQ(reached.join(u", "), u"Cancel, Search results, Search, Cancel"_s);
    keys(u"Esc"_s);  // on "Cancel"
    expectEnded();
    EXPECT_TRUE(table->hasFocus());
    keys(u"Tab"_s);
    EXPECT_TRUE(belowTheBar->hasFocus()) << "nothing lies over the rows any more";
}

}  // namespace
