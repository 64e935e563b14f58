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

// Told of the search as it goes. Not owned.
class SearchDisplayDelegate {
public:
    SearchDisplayDelegate() = default;
    virtual ~SearchDisplayDelegate() = default;
    SearchDisplayDelegate(const SearchDisplayDelegate&) = delete;
    SearchDisplayDelegate& operator=(const SearchDisplayDelegate&) = delete;

    // The search begins: nothing has been typed yet.
    virtual void willBeginSearch(SearchDisplayController& controller);
    // The search text changed. Returns whether the results table is to be reloaded.
    virtual bool shouldReloadTableForSearchString(SearchDisplayController& controller, const QString& text);
    virtual bool shouldReloadTableForSearchScope(SearchDisplayController& controller, int scope);
    virtual void willShowSearchResultsTableView(SearchDisplayController& controller, TableView& table);
    virtual void willUnloadSearchResultsTableView(SearchDisplayController& controller, TableView& table);
};

// The field to search in, with a magnifying glass, a clear button and, while searching, "Cancel". White, without a
// background of its own. 38 points high.
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

// Runs a search: while its bar has text, a second table, the results table, lies over the contents' table with the
// rows that the results data source gives. A tap on the bar or a letter typed into it makes it active; "Cancel",
// Escape or setActive(false) ends it and empties the bar. Main thread only.
class SearchDisplayController : public QObject {
    Q_OBJECT
public:
    // `searchBar` lives in the header of `contentsTable`; both belong to the screen and outlive this object.
    SearchDisplayController(SearchBar* searchBar, TableView* contentsTable, QObject* parent = nullptr);
    ~SearchDisplayController() override;

    void setDelegate(SearchDisplayDelegate* delegate);
    void setSearchResultsDataSource(TableViewDataSource* dataSource);
    void setSearchResultsDelegate(TableViewDelegate* delegate);

    SearchBar* searchBar() const;
    // Made on first use, kept as long as this object. Has no rows while it is hidden.
    TableView* searchResultsTableView() const;

    // Those whose rows are shown: the contents' table and, while there are results, theirs. What news there are for
    // rows go to all of them, also to those that lie under the results until the search ends.
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
