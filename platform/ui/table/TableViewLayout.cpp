// Data source queries and layout.
#include <QApplication>
#include <QFocusEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>

#include "platform/ui/input/Focus.h"
#include "platform/ui/table/TableAnnouncements.h"
#include "platform/ui/table/TableViewPrivate.h"

namespace platform {

namespace {

constexpr int defaultRowHeight = 50;
constexpr int margin = 60;  // points above and below the viewport in which rows also have cells

}  // namespace

TableViewDataSource* TableView::Private::asksData() const {
    Q_ASSERT_X(!dataSource || !dataSourceAlive.expired(), "TableView", "the data source is gone");
    return dataSourceAlive.expired() ? nullptr : dataSource;
}

TableViewDelegate* TableView::Private::asksDelegate() const {
    Q_ASSERT_X(!delegate || !delegateAlive.expired(), "TableView", "the delegate is gone");
    return delegateAlive.expired() ? nullptr : delegate;
}

bool TableView::Private::canDelete(IndexPath path) const {
    TableViewDataSource* source = asksData();
    return source && source->canEditRowAtIndexPath(*q, path) &&
           source->editingStyleForRowAtIndexPath(*q, path) == EditingStyle::remove;
}

void TableView::Private::ensureLoaded() {
    if (needsReload) reload();
}

void TableView::Private::reload() {
    needsReload = false;
    finishMotion();
    closeUncovered();
    endEditing();
    {
        const QScopedValueRollback<bool> hold(settling, true);
        cells.recycleWhere([](IndexPath) { return true; });
        dropFooters();
        readGeometry();
        updateRange();
    }
    layout();
    TableAnnouncements::rowsChanged(*q);
}

void TableView::Private::readGeometry() {
    geometry.clear();
    geometry.setHeaderHeight(headerHeight());
    if (TableViewDataSource* source = asksData()) {
        TableViewDelegate* look = asksDelegate();
        const int sections = source->numberOfSectionsInTableView(*q);
        for (int s = 0; s < sections; ++s) {
            const int rows = source->numberOfRowsInSection(*q, s);
            geometry.appendSection(rows, defaultRowHeight, look ? look->heightForFooterInSection(*q, s) : 0);
            if (rows > 0) readRowHeight(s);
        }
    }
    selected.reset();
    if (current && !geometry.contains(*current)) current.reset();
}

void TableView::Private::readRowHeight(int section) {
    if (TableViewDelegate* look = asksDelegate())
        geometry.setRowHeight(section, look->heightForRowAtIndexPath(*q, {section, 0}));
}

void TableView::Private::updateRange() {
    const int visible = q->viewport()->height();
    QScrollBar* bar = q->verticalScrollBar();
    bar->setPageStep(visible);
    bar->setRange(0, std::max(0, geometry.contentHeight() - visible));
}

int TableView::Private::offset() const {
    return q->verticalScrollBar()->value();
}

int TableView::Private::headerHeight() const {
    return header ? header->height() : 0;
}

void TableView::Private::layout() {
    if (settling || needsReload) return;
    endEditingOf([this](IndexPath path) {
        const auto [first, last] = rowsToKeep();
        const int ordinal = geometry.ordinal(path);
        return ordinal < first || ordinal >= last;
    });
    const QScopedValueRollback<bool> hold(settling, true);
    const auto [first, last] = rowsToKeep();
    cells.recycleWhere([this, first = first, last = last](IndexPath path) {
        const int ordinal = geometry.ordinal(path);
        return ordinal < first || ordinal >= last;
    });
    for (int ordinal = first; ordinal < last; ++ordinal) {
        const IndexPath path = geometry.atOrdinal(ordinal);
        if (TableViewCell* cell = cellFor(path)) place(path, cell);
    }
    cells.hideWaiting();
    placeMovingCell();
    placeFooters();
    if (header) {
        const int y = -offset() + motion.displacement({-1, 0});
        header->setGeometry(0, y, q->viewport()->width(), header->height());
    }
    thumb->place();
}

void TableView::Private::headerChanged() {
    geometry.setHeaderHeight(headerHeight());
    updateRange();
    layout();
}

std::pair<int, int> TableView::Private::rowsToKeep() const {
    const int around = margin + motion.reach();
    return geometry.rowsBetween(offset() - around, offset() + q->viewport()->height() + around);
}

// The first row of which at least a point is visible.
std::optional<IndexPath> TableView::Private::firstInSight() const {
    const auto [first, last] = geometry.rowsBetween(offset(), offset() + q->viewport()->height());
    if (first == last) return std::nullopt;
    return geometry.atOrdinal(first);
}

// Clears the focus of a field in one of these rows before its cell is reused, so that the typed text reaches its row.
void TableView::Private::endEditingOf(const std::function<bool(IndexPath)>& rows) {
    QWidget* field = q->window()->focusWidget();
    const std::optional<IndexPath> path = cells.pathOf(field);
    if (!path || !rows(*path)) return;
    if (!field->hasFocus()) {  // in an inactive window Qt sends no FocusOut
        QFocusEvent out(QEvent::FocusOut, Qt::OtherFocusReason);
        QApplication::sendEvent(field, &out);
    }
    q->setFocus(Qt::OtherFocusReason);
}

void TableView::Private::endEditing() {
    endEditingOf([](IndexPath) { return true; });
}

// Called before layout(), which would end the editing of a row that a resize has moved out of view.
void TableView::Private::keepEditingInSight() {
    QWidget* focused = q->window()->focusWidget();
    if (!focused || !Focus::isTextField(focused)) return;
    if (const std::optional<IndexPath> path = cells.pathOf(focused)) q->scrollToRow(*path);
}

TableViewCell* TableView::Private::cellFor(IndexPath path) {
    if (TableViewCell* cell = cells.at(path)) return cell;
    TableViewDataSource* source = asksData();
    if (!source) return nullptr;
    TableViewCell* cell = source->cellForRowAtIndexPath(*q, path);
    Q_ASSERT_X(cell, "TableView", "the data source returned no cell");
    if (cell->parentWidget() != q->viewport()) adopt(cell);
    cells.put(path, cell);
    cell->resize(q->viewport()->width(), geometry.rowHeight(path.section));
    cell->setDeletable(canDelete(path), false);
    cell->setSelected(selected == path, false);
    cell->setEditing(editing, false);
    cell->setShowsFocus(showsCurrent && current == path);
    if (TableViewDelegate* look = asksDelegate()) look->willDisplayCell(*q, *cell, path);
    return cell;
}

// For a row without a cell, the data source fills one for the duration of the call.
void TableView::Private::withCell(IndexPath path, const std::function<void(const TableViewCell&)>& ask) {
    if (const TableViewCell* shown = cells.at(path)) return ask(*shown);
    TableViewDataSource* source = asksData();
    TableViewCell* cell = source ? source->cellForRowAtIndexPath(*q, path) : nullptr;
    if (!cell) return;
    if (cell->parentWidget() != q->viewport()) adopt(cell);
    ask(*cell);
    cells.recycle(cell);
    cells.hideWaiting();
}

void TableView::Private::adopt(TableViewCell* cell) {
    cell->setParent(q->viewport());
    // The table filters presses on fields: scroll or edit is decided when the press moves or ends.
    for (QLineEdit* field : cell->findChildren<QLineEdit*>()) {
        field->setFocusPolicy(Qt::TabFocus);
        field->installEventFilter(q);
    }
    QObject::connect(cell, &TableViewCell::deleteControlTapped, q, [this, cell] {
        uncover(cell);
        cell->glideAside(true);
    });
    QObject::connect(cell, &TableViewCell::deleteTapped, q, [this, cell] {
        if (const auto path = cells.pathOf(cell)) commitDeletion(*path);
    });
}

void TableView::Private::place(IndexPath path, TableViewCell* cell) {
    const int y = geometry.rowTop(path) - offset() + motion.displacement(path);
    cell->setGeometry(0, y, q->viewport()->width(), geometry.rowHeight(path.section));
    cell->show();
}

void TableView::Private::dropFooters() {
    for (const auto& [section, view] : footers) {
        if (!view) continue;
        view->hide();
        view->deleteLater();
    }
    footers.clear();
}

void TableView::Private::placeFooters() {
    TableViewDelegate* look = asksDelegate();
    if (!look) return;
    const QRect area = q->viewport()->rect();
    for (int s = 0; s < geometry.sectionCount(); ++s) {
        const IndexPath end{s, geometry.rowCount(s)};
        const QRect frame(0, geometry.footerTop(s) - offset() + motion.displacement(end), area.width(),
                          geometry.footerHeight(s));
        const bool visible = frame.intersects(area);
        if (visible && !footers.contains(s)) {
            QWidget* view = look->viewForFooterInSection(*q, s);
            if (view) view->setParent(q->viewport());
            footers[s] = view;
        }
        const auto footer = footers.find(s);
        if (footer == footers.end() || !footer->second) continue;
        footer->second->setGeometry(frame);
        footer->second->setVisible(visible);
    }
}

void TableView::Private::showFocus() {
    for (const auto& [path, cell] : cells.shown()) cell->setShowsFocus(showsCurrent && current == path);
}

}  // namespace platform
