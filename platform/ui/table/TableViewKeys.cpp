// Keyboard equivalents of all gestures.
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <cstdlib>

#include "platform/ui/controls/Switch.h"
#include "platform/ui/table/TableAnnouncements.h"
#include "platform/ui/table/TableViewPrivate.h"

namespace platform {

bool TableView::Private::key(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) return q->endsRowEditing();
    const int total = geometry.totalRows();
    const int rowHeight = total > 0 ? geometry.rowHeight(geometry.atOrdinal(0).section) : 1;
    const int page = std::max(1, q->viewport()->height() / rowHeight - 1);
    switch (event->key()) {
        case Qt::Key_Up:
            return moveCurrentBy(-1);
        case Qt::Key_Down:
            return moveCurrentBy(1);
        case Qt::Key_PageUp:
            return moveCurrentBy(-page);
        case Qt::Key_PageDown:
            return moveCurrentBy(page);
        case Qt::Key_Home:
            return moveCurrentBy(-total);
        case Qt::Key_End:
            return moveCurrentBy(total);
        default:
            break;
    }
    if (!q->hasFocus() || !current) return false;
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            q->scrollToRow(*current);
            if (uncovered && cells.pathOf(uncovered) == current && event->key() != Qt::Key_Space) {
                deleteCurrent();
            } else if (!closeUncovered()) {
                enter(event->key() == Qt::Key_Space);
            }
            return true;
        case Qt::Key_Delete:
            deleteCurrent();
            return true;
        default:
            return false;
    }
}

// Without a current row, starts at the first visible one. At the first or last row it scrolls to the very end, so that
// the header or the last footer is visible too.
bool TableView::Private::moveCurrentBy(int rows) {
    const int total = geometry.totalRows();
    if (total == 0) return false;
    closeUncovered();
    if (!q->hasFocus()) {
        if (const auto path = cells.pathOf(q->window()->focusWidget())) current = path;
        q->setFocus(Qt::OtherFocusReason);
    }
    const int firstSeen = geometry.rowsBetween(offset(), offset() + 1 + q->viewport()->height()).first;
    const bool toTheEnd = std::abs(rows) == total;
    const int from = current ? geometry.ordinal(*current) : toTheEnd ? firstSeen : firstSeen - rows;
    const int next = std::clamp(from + rows, 0, total - 1);
    moveCurrentTo(geometry.atOrdinal(next));
    if (rows < 0 && next == 0) q->setContentOffset(0);
    if (rows > 0 && next == total - 1) q->setContentOffset(q->verticalScrollBar()->maximum());
    return true;
}

void TableView::Private::moveCurrentTo(IndexPath path) {
    if (!q->hasFocus()) q->setFocus(Qt::OtherFocusReason);
    current = path;
    showsCurrent = true;
    q->scrollToRow(path);
    showFocus();
    tellCurrent();
}

void TableView::Private::tellCurrent() {
    if (current && q->hasFocus()) TableAnnouncements::rowFocused(*q, geometry.ordinal(*current));
}

// Space toggles the row's switch; without one it selects, as Return does.
void TableView::Private::enter(bool bySpace) {
    const TableViewCell* cell = cells.at(*current);
    if (bySpace && cell && cell->accessorySwitch()) {
        toggle(*current);
    } else if (canSelect()) {
        select(*current);
    }
}

void TableView::Private::toggle(IndexPath path) {
    const TableViewCell* cell = cells.at(path);
    Switch* toggled = cell ? cell->accessorySwitch() : nullptr;
    if (!toggled || !toggled->isEnabled()) return;
    toggled->click();
    TableAnnouncements::rowToggled(*q, geometry.ordinal(path));
}

// The first press uncovers "Delete", the second one confirms.
void TableView::Private::deleteCurrent() {
    if (!canDelete(*current)) return;
    q->scrollToRow(*current);
    TableViewCell* cell = cells.at(*current);
    if (!cell) return;
    if (uncovered == cell) {
        commitDeletion(*current);
        return;
    }
    uncover(cell);
    cell->glideAside(true);
    TableAnnouncements::rowDescribed(*q, geometry.ordinal(*current));
}

}  // namespace platform
