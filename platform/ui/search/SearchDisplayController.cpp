#include "platform/ui/search/SearchDisplayController.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>

#include "platform/ui/input/Focus.h"
#include "platform/ui/table/TableView.h"

namespace platform {

namespace {

constexpr int barOffset = 0;  // content offset during a search, at which the bar in the header is visible

}  // namespace

void SearchDisplayDelegate::willBeginSearch(SearchDisplayController&) {}
bool SearchDisplayDelegate::shouldReloadTableForSearchString(SearchDisplayController&, const QString&) {
    return true;
}
bool SearchDisplayDelegate::shouldReloadTableForSearchScope(SearchDisplayController&, int) {
    return true;
}
void SearchDisplayDelegate::willShowSearchResultsTableView(SearchDisplayController&, TableView&) {}
void SearchDisplayDelegate::willUnloadSearchResultsTableView(SearchDisplayController&, TableView&) {}

struct SearchDisplayController::Private {
    TableView& table();
    void textChanged(const QString& text);
    void showResults();
    void hideResults();
    void place();
    bool key(const QObject* watched, int key);
    bool fieldKey(int key);
    void takeFocusFrom(QWidget* widget);

    SearchDisplayController* q;
    QPointer<SearchBar> bar;
    QPointer<TableView> contents;
    QPointer<TableView> results;
    SearchDisplayDelegate* delegate = nullptr;
    TableViewDataSource* dataSource = nullptr;
    TableViewDelegate* tableDelegate = nullptr;
    bool active = false;
    bool showsResults = false;
};

// The results table is a sibling of the contents' table and covers it below the bar.
TableView& SearchDisplayController::Private::table() {
    if (!results) {
        results = new TableView(contents->parentWidget());
        results->hide();
        results->setAccessibleName(QStringLiteral("Search results"));
        results->setDelegate(tableDelegate);
        results->installEventFilter(q);
    }
    return *results;
}

void SearchDisplayController::Private::textChanged(const QString& text) {
    if (!text.isEmpty() && !active) q->setActive(true, false);
    // Ends the editing of a field in a result before the result is replaced.
    if (showsResults && Focus::heldWithin(results)) results->setFocus(Qt::OtherFocusReason);
    const bool reloads = !delegate || delegate->shouldReloadTableForSearchString(*q, text);
    if (text.isEmpty()) {
        hideResults();
        return;
    }
    const bool appears = !showsResults;
    if (appears && delegate) delegate->willShowSearchResultsTableView(*q, table());
    if (appears) table().setDataSource(dataSource);
    if (appears || reloads) table().reloadData();
    if (appears) showResults();
}

void SearchDisplayController::Private::showResults() {
    showsResults = true;
    contents->setContentOffset(barOffset);
    contents->setOnlyReachable(bar);
    place();
    table().setContentOffset(0);
    table().show();
    table().raise();
}

void SearchDisplayController::Private::hideResults() {
    if (!showsResults) return;
    showsResults = false;
    contents->setOnlyReachable(nullptr);
    if (delegate) delegate->willUnloadSearchResultsTableView(*q, *results);
    takeFocusFrom(results);
    results->hide();
    results->setDataSource(nullptr);  // its rows may be invalid, and a kinetic scroll may still run
}

void SearchDisplayController::Private::place() {
    if (!results || !bar || !contents) return;
    QRect frame = contents->geometry();
    frame.setTop(bar->mapTo(contents->parentWidget(), QPoint(0, bar->height())).y());
    results->setGeometry(frame);
}

// Called before a widget is hidden; otherwise Qt would choose the next focus widget.
void SearchDisplayController::Private::takeFocusFrom(QWidget* widget) {
    if (Focus::heldWithin(widget)) contents->setFocus(Qt::OtherFocusReason);
}

bool SearchDisplayController::Private::key(const QObject* watched, int key) {
    if (watched == bar->field()) return showsResults && fieldKey(key);
    if (key != Qt::Key_Escape) return false;
    TableView* table = watched == results ? results : contents;
    if (!table->endsRowEditing()) q->setActive(false, true);
    return true;
}

// Navigation keys in the field move the focus to the results instead of the covered rows.
bool SearchDisplayController::Private::fieldKey(int key) {
    switch (key) {
        case Qt::Key_Down:
        case Qt::Key_PageDown:
            results->setFocus(Qt::TabFocusReason);
            return true;
        case Qt::Key_Up:
        case Qt::Key_PageUp:
            return true;
        default:
            return false;
    }
}

SearchDisplayController::SearchDisplayController(SearchBar* searchBar, TableView* contentsTable, QObject* parent)
    : QObject(parent), d_(std::make_unique<Private>()) {
    d_->q = this;
    d_->bar = searchBar;
    d_->contents = contentsTable;
    contentsTable->installEventFilter(this);
    searchBar->field()->installEventFilter(this);
    connect(searchBar, &SearchBar::textChanged, this, [this](const QString& text) { d_->textChanged(text); });
    connect(searchBar, &SearchBar::didBeginEditing, this, [this] { setActive(true, true); });
    connect(searchBar, &SearchBar::cancelClicked, this, [this] { setActive(false, true); });
    // While results are shown, the contents must not scroll: the bar would move.
    connect(contentsTable->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        if (d_->showsResults) d_->contents->setContentOffset(barOffset);
    });
}

SearchDisplayController::~SearchDisplayController() {
    delete d_->results;
}

void SearchDisplayController::setDelegate(SearchDisplayDelegate* delegate) {
    d_->delegate = delegate;
}

void SearchDisplayController::setSearchResultsDataSource(TableViewDataSource* dataSource) {
    d_->dataSource = dataSource;
    if (d_->showsResults) d_->results->setDataSource(dataSource);
}

void SearchDisplayController::setSearchResultsDelegate(TableViewDelegate* delegate) {
    d_->tableDelegate = delegate;
    if (d_->results) d_->results->setDelegate(delegate);
}

SearchBar* SearchDisplayController::searchBar() const {
    return d_->bar;
}

TableView* SearchDisplayController::searchResultsTableView() const {
    return &d_->table();
}

std::vector<TableView*> SearchDisplayController::tables() const {
    std::vector<TableView*> tables{d_->contents};
    if (d_->showsResults) tables.push_back(d_->results);
    return tables;
}

bool SearchDisplayController::isActive() const {
    return d_->active;
}

void SearchDisplayController::setActive(bool active, bool animated) {
    if (d_->active == active) return;
    d_->active = active;
    if (active) {
        if (d_->delegate) d_->delegate->willBeginSearch(*this);
        d_->contents->setContentOffset(barOffset);
    } else {
        // First: hiding a focused "Cancel" would focus the field, which would start the search again.
        d_->takeFocusFrom(d_->bar);
        d_->bar->setText(QString());
    }
    d_->bar->setShowsCancelButton(active, animated);
}

// Handles these event types only: others also arrive from tables during their destruction.
bool SearchDisplayController::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::Resize:
        case QEvent::Move:
            if (watched == d_->contents) d_->place();
            return false;
        case QEvent::KeyPress:
            return d_->active && d_->key(watched, static_cast<QKeyEvent*>(event)->key());
        default:
            return false;
    }
}

}  // namespace platform
