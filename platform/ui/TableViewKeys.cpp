// The keyboard's way to everything a finger does.
#include <QKeyEvent>
#include <algorithm>
#include <cstdlib>

#include "platform/ui/TableViewPrivate.h"

namespace platform {

bool TableView::Private::key(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) return q->endsRowEditing();
    const int total = geometry.totalRows();
    const int rowHeight = total > 0 ? geometry.rowHeight(geometry.atOrdinal(0).section) : 1;
    const int page = std::max(1, (q->viewport()->height() - bottomInset) / rowHeight - 1);
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
            } else if (!closeUncovered() && canSelect()) {
                select(*current);
            }
            return true;
        case Qt::Key_Delete:
            deleteCurrent();
            return true;
        default:
            return false;
    }
}

// Without a current row the keyboard starts at the first one in sight.
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
    const int next = from + rows;
    current = geometry.atOrdinal(std::clamp(next, 0, total - 1));
    showsCurrent = true;
    q->scrollToRow(*current);
    showFocus();
    return true;
}

// The first press uncovers "Delete", the second one confirms.
void TableView::Private::deleteCurrent() {
    if (!canDelete(*current)) return;
    q->scrollToRow(*current);
    TableViewCell* cell = cells.at(*current);
    if (!cell) return;
    if (uncovered == cell) {
        commitDeletion(cell);
        return;
    }
    uncover(cell);
    cell->glideAside(true);
}

// What Tab reaches inside the table, from top to bottom: cells are reused, so the order of their making says nothing.
QList<QWidget*> TableView::Private::controlsInOrder() const {
    QList<QWidget*> controls;
    for (QWidget* widget : q->viewport()->findChildren<QWidget*>()) {
        if (widget->isEnabled() && widget->isVisibleTo(q) && (widget->focusPolicy() & Qt::TabFocus)) controls += widget;
    }
    const auto place = [this](const QWidget* widget) {
        const QPoint corner = widget->mapTo(q->viewport(), QPoint());
        return std::pair(corner.y(), corner.x());
    };
    std::sort(controls.begin(), controls.end(),
              [&](const QWidget* a, const QWidget* b) { return place(a) < place(b); });
    return controls;
}

QWidget* TableView::Private::nextOutside(bool forward) const {
    QWidget* widget = q;
    do {
        widget = forward ? widget->nextInFocusChain() : widget->previousInFocusChain();
        const bool takesTab = widget->isEnabled() && widget->isVisible() && (widget->focusPolicy() & Qt::TabFocus);
        if (takesTab && !q->isAncestorOf(widget)) return widget;
    } while (widget != q);
    return nullptr;
}

void TableView::Private::bringIntoSight(const QWidget* control) {
    if (const auto path = cells.pathOf(control)) q->scrollToRow(*path);
    if (header && header->isAncestorOf(control)) q->setContentOffset(0);
}

}  // namespace platform
