#pragma once

#include <QObject>
#include <memory>
#include <vector>

#include "platform/ui/search/SearchBar.h"

namespace platform {

class TableView;
class TableViewDataSource;
class TableViewDelegate;
class SearchDisplayController;

// Receives the events of a search. Not owned.
class SearchDisplayDelegate {
public:
    SearchDisplayDelegate() = default;
    virtual ~SearchDisplayDelegate() = default;
    SearchDisplayDelegate(const SearchDisplayDelegate&) = delete;
    SearchDisplayDelegate& operator=(const SearchDisplayDelegate&) = delete;

    // The search has become active; the text is still empty.
    virtual void willBeginSearch(SearchDisplayController& controller);
    // The search text has changed. Returns whether to reload the results table.
    virtual bool shouldReloadTableForSearchString(SearchDisplayController& controller, const QString& text);
    virtual bool shouldReloadTableForSearchScope(SearchDisplayController& controller, int scope);
    virtual void willShowSearchResultsTableView(SearchDisplayController& controller, TableView& table);
    virtual void willUnloadSearchResultsTableView(SearchDisplayController& controller, TableView& table);
};

// Runs a search: while the bar has text, a second table with the rows of the results data source covers the contents'
// table. A tap on the bar or typing activates it; "Cancel", Escape or setActive(false) ends it and clears the bar. Main
// thread only.
class SearchDisplayController : public QObject {
    Q_OBJECT
public:
    // `searchBar` is part of the header of `contentsTable`. Both are owned by the screen and outlive this object.
    SearchDisplayController(SearchBar* searchBar, TableView* contentsTable, QObject* parent = nullptr);
    ~SearchDisplayController() override;

    void setDelegate(SearchDisplayDelegate* delegate);
    void setSearchResultsDataSource(TableViewDataSource* dataSource);
    void setSearchResultsDelegate(TableViewDelegate* delegate);

    SearchBar* searchBar() const;
    // Created on first use and kept. Has no rows while it is hidden.
    TableView* searchResultsTableView() const;

    // The contents' table and, while results are shown, the results table. Apply changes of rows to all of them: the
    // contents' table is visible again when the search ends.
    std::vector<TableView*> tables() const;

    bool isActive() const;
    void setActive(bool active, bool animated);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Private;
    std::unique_ptr<Private> d_;
};

}  // namespace platform
