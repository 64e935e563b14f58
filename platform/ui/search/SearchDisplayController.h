#pragma once

#include <QObject>
#include <QWidget>
#include <memory>
#include <vector>

class QAbstractButton;
class QLineEdit;

namespace platform {

class GlidingValue;
class SearchBar;
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

// A search field with magnifying glass, clear button and, during a search, "Cancel". 38 points high.
class SearchBar : public QWidget {
    Q_OBJECT
public:
    explicit SearchBar(QWidget* parent = nullptr);
    ~SearchBar() override;

    QString text() const;
    void setText(const QString& text);
    int selectedScopeButtonIndex() const { return 0; }
    QLineEdit* field() const { return field_; }

    // Shows or hides "Cancel".
    void setShowsCancelButton(bool shows, bool animated = false);

Q_SIGNALS:
    void textChanged(const QString& text);
    void didBeginEditing();
    void cancelClicked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QRect outline() const;
    void place();

    QLineEdit* field_;
    QAbstractButton* clearButton_;
    QAbstractButton* cancelButton_;
    std::unique_ptr<GlidingValue> cancelShown_;  // 0 hidden, 1 shown
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
