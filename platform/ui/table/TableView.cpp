#include "platform/ui/table/TableView.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>

#include "platform/ui/input/Focus.h"
#include "platform/ui/table/TableAnnouncements.h"
#include "platform/ui/table/TableViewPrivate.h"

namespace platform {

TableViewDataSource::TableViewDataSource() : alive_(std::make_shared<const bool>(true)) {}
TableViewDataSource::~TableViewDataSource() = default;
int TableViewDataSource::numberOfSectionsInTableView(TableView&) {
    return 1;
}
bool TableViewDataSource::canEditRowAtIndexPath(TableView&, IndexPath) {
    return false;
}
EditingStyle TableViewDataSource::editingStyleForRowAtIndexPath(TableView&, IndexPath) {
    return EditingStyle::remove;
}
void TableViewDataSource::commitEditingStyle(TableView&, EditingStyle, IndexPath) {}

TableViewDelegate::TableViewDelegate() : alive_(std::make_shared<const bool>(true)) {}
TableViewDelegate::~TableViewDelegate() = default;
void TableViewDelegate::didSelectRowAtIndexPath(TableView&, IndexPath) {}
int TableViewDelegate::heightForRowAtIndexPath(TableView&, IndexPath) {
    return 50;
}
int TableViewDelegate::heightForFooterInSection(TableView&, int) {
    return 0;
}
void TableViewDelegate::willDisplayCell(TableView&, TableViewCell&, IndexPath) {}
QWidget* TableViewDelegate::viewForFooterInSection(TableView&, int) {
    return nullptr;
}

TableView::Private::Private(TableView* table)
    : q(table), kinetic(table->verticalScrollBar()), thumb(new ScrollThumb(table->verticalScrollBar(), table)) {}

TableView::TableView(QWidget* parent) : QAbstractScrollArea(parent), d_(std::make_unique<Private>(this)) {
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::StrongFocus);
    QPalette white = viewport()->palette();
    white.setColor(QPalette::Window, Qt::white);
    viewport()->setPalette(white);
    viewport()->setBackgroundRole(QPalette::Window);  // inherited by the rows' widgets
    viewport()->setAutoFillBackground(true);
}

TableView::~TableView() = default;

void TableView::setDataSource(TableViewDataSource* dataSource) {
    d_->dataSource = dataSource;
    d_->dataSourceAlive = dataSource ? dataSource->alive_ : nullptr;
    setNeedsReload();
}

void TableView::setDelegate(TableViewDelegate* delegate) {
    d_->delegate = delegate;
    d_->delegateAlive = delegate ? delegate->alive_ : nullptr;
    setNeedsReload();
}

// Deferred: a screen sets itself as data source in loadView(), before its data is ready.
void TableView::setNeedsReload() {
    d_->needsReload = true;
    if (isVisible())
        QMetaObject::invokeMethod(
            this, [this] { d_->ensureLoaded(); }, Qt::QueuedConnection);
}

void TableView::setHeaderView(QWidget* view) {
    if (d_->header == view) return;
    if (d_->header) {
        d_->header->hide();
        d_->header->deleteLater();
    }
    d_->header = view;
    if (view) {
        view->setParent(viewport());
        view->installEventFilter(this);
        view->show();
    }
    d_->headerChanged();
}

QWidget* TableView::headerView() const {
    return d_->header;
}

void TableView::reloadData() {
    d_->reload();
}

TableViewCell* TableView::dequeueReusableCell(const QString& reuseIdentifier) {
    return d_->cells.dequeue(reuseIdentifier);
}

void TableView::forEachCell(const std::function<void(IndexPath, TableViewCell&)>& tell) const {
    if (d_->needsReload) return;  // all cells are about to be refilled
    for (const auto& [path, cell] : d_->cells.shown()) tell(path, *cell);
}

TableViewCell* TableView::cellForRow(IndexPath indexPath) const {
    d_->ensureLoaded();
    return d_->cells.at(indexPath);
}

std::optional<IndexPath> TableView::indexPathForCell(const QWidget* cellOrDescendant) const {
    return d_->cells.pathOf(cellOrDescendant);
}

QRect TableView::rectForRow(IndexPath indexPath) const {
    d_->ensureLoaded();
    if (!d_->geometry.contains(indexPath)) return {};
    return {0, d_->geometry.rowTop(indexPath) - d_->offset(), viewport()->width(),
            d_->geometry.rowHeight(indexPath.section)};
}

void TableView::insertRow(IndexPath indexPath, RowAnimation animation) {
    d_->changeRows(indexPath, 1, animation);
}

void TableView::deleteRow(IndexPath indexPath, RowAnimation animation) {
    d_->changeRows(indexPath, -1, animation);
}

void TableView::deselectRow(IndexPath indexPath, bool animated) {
    if (d_->selected != indexPath) return;
    d_->selected.reset();
    if (TableViewCell* cell = d_->cells.at(indexPath)) cell->setSelected(false, animated);
}

std::optional<IndexPath> TableView::indexPathForSelectedRow() const {
    return d_->selected;
}

void TableView::setEditing(bool editing, bool animated) {
    d_->closeUncovered();
    d_->endEditing();
    d_->editing = editing;
    for (const auto& [path, cell] : d_->cells.shown()) cell->setEditing(editing, animated);
}

bool TableView::isEditing() const {
    return d_->editing;
}

void TableView::setAllowsSelectionDuringEditing(bool allows) {
    d_->allowsSelectionDuringEditing = allows;
}

int TableView::contentOffset() const {
    return d_->offset();
}

void TableView::setContentOffset(int points) {
    d_->ensureLoaded();
    d_->kinetic.stop();
    verticalScrollBar()->setValue(points);
}

int TableView::contentHeight() const {
    d_->ensureLoaded();
    return d_->geometry.contentHeight();
}

void TableView::scrollToRow(IndexPath indexPath) {
    const QRect row = rectForRow(indexPath);
    if (row.isNull()) return;
    const int visible = viewport()->height();
    if (row.top() < 0) {
        setContentOffset(d_->offset() + row.top());
    } else if (row.top() + row.height() > visible) {
        setContentOffset(d_->offset() + row.top() + row.height() - visible);
    }
}

void TableView::setOnlyReachable(QWidget* partOfHeader) {
    d_->onlyReachable = partOfHeader;
    setFocusPolicy(partOfHeader ? Qt::NoFocus : Qt::StrongFocus);
    TableAnnouncements::rowsChanged(*this);
}

QWidget* TableView::partBefore() const {
    return d_->onlyReachable ? d_->onlyReachable : d_->header;
}

bool TableView::areRowsReachable() const {
    return !d_->onlyReachable;
}

std::vector<QWidget*> TableView::partsAfter() const {
    std::vector<QWidget*> cells;
    if (!areRowsReachable()) return cells;
    for (const auto& [path, cell] : d_->cells.shown()) cells.push_back(cell);
    return cells;
}

void TableView::bringIntoSight(const QWidget* part) {
    if (const auto path = d_->cells.pathOf(part)) scrollToRow(*path);
    if (d_->header && d_->header->isAncestorOf(part)) setContentOffset(0);
}

bool TableView::endsRowEditing() {
    if (d_->closeUncovered()) return true;
    const QWidget* held = window()->focusWidget();
    const bool isEdited = held && Focus::isTextField(held) && d_->cells.pathOf(held);
    if (isEdited) d_->endEditing();
    return isEdited;
}

bool TableView::event(QEvent* event) {
    if (event->type() == QEvent::Show) d_->ensureLoaded();
    if (event->type() == QEvent::Enter) d_->thumb->flash();
    if (event->type() == QEvent::UngrabMouse) d_->cancelGesture();
    return QAbstractScrollArea::event(event);
}

bool TableView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == d_->header && event->type() == QEvent::Resize) d_->headerChanged();
    if (auto* field = qobject_cast<QLineEdit*>(watched)) return d_->fieldEvent(field, event);
    return QAbstractScrollArea::eventFilter(watched, event);
}

bool TableView::viewportEvent(QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::MouseButtonRelease:
            return d_->mouseEvent(static_cast<QMouseEvent*>(event), nullptr);
        case QEvent::Wheel:
            d_->wheel(static_cast<QWheelEvent*>(event));
            return true;
        default:
            return QAbstractScrollArea::viewportEvent(event);
    }
}

void TableView::resizeEvent(QResizeEvent*) {
    d_->ensureLoaded();
    d_->updateRange();
    d_->keepEditingInSight();
    d_->layout();
}

void TableView::keyPressEvent(QKeyEvent* event) {
    if (!d_->key(event)) event->ignore();
}

void TableView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    const bool byTab = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    const bool isSeen = byTab || Focus::isByKeyboard();
    if (!isSeen && !QAccessible::isActive()) return;
    d_->ensureLoaded();
    if (!d_->current) d_->current = d_->firstInSight();
    d_->showsCurrent = isSeen;
    d_->showFocus();
    // Queued: the row's focus event must follow the one that Qt sends for the table itself.
    QMetaObject::invokeMethod(
        this, [this] { d_->tellCurrent(); }, Qt::QueuedConnection);
}

void TableView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    if (event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason) return;
    hideFocus();
}

void TableView::hideFocus() {
    d_->showsCurrent = false;
    d_->showFocus();
}

bool TableView::focusNextPrevChild(bool next) {
    return Focus::moveOn(*window(), next);
}

void TableView::scrollContentsBy(int, int) {
    if (d_->settling) return;
    d_->closeUncovered();
    d_->layout();
    d_->thumb->flash();
}

}  // namespace platform
