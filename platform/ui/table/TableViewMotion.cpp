// Animated insertion and deletion of rows.
#include <QGraphicsOpacityEffect>
#include <QScopedValueRollback>

#include "platform/ui/motion/AnimationClock.h"
#include "platform/ui/table/TableAnnouncements.h"
#include "platform/ui/table/TableViewPrivate.h"

namespace platform {

namespace {

constexpr double seconds = 0.3;

void setOpacity(QWidget* widget, double opacity) {
    auto* effect = qobject_cast<QGraphicsOpacityEffect*>(widget->graphicsEffect());
    if (!effect) {
        effect = new QGraphicsOpacityEffect(widget);
        widget->setGraphicsEffect(effect);
    }
    effect->setOpacity(opacity);
}

void shift(std::optional<IndexPath>& path, IndexPath from, int by) {
    if (path && path->section == from.section && path->row >= from.row) path->row += by;
}

}  // namespace

void TableView::Private::changeRows(IndexPath path, int difference, RowAnimation animation) {
    if (needsReload) return;
    finishMotion();
    TableViewDataSource* source = asksData();
    const bool known = difference < 0
                           ? geometry.contains(path)
                           : path.section < geometry.sectionCount() && path.row <= geometry.rowCount(path.section);
    if (!source || !known ||
        source->numberOfRowsInSection(*q, path.section) != geometry.rowCount(path.section) + difference) {
        reload();
        return;
    }

    RowMotion next;
    next.path = path;
    next.isDeletion = difference < 0;
    next.animation = animation;
    const int offsetBefore = offset();
    const IndexPath below{path.section, difference < 0 ? path.row + 1 : path.row};
    if (difference < 0) {
        next.leavingTop = geometry.rowTop(path);
        next.leavingCell = cells.take(path);
        if (selected == path) selected.reset();
        if (gesture.row == path) gesture.row.reset();
        if (uncovered == next.leavingCell) uncovered = nullptr;
    }
    closeUncovered();
    cells.shiftRows(below, difference);
    shift(selected, below, difference);
    shift(current, below, difference);
    shift(gesture.row, below, difference);
    {
        const QScopedValueRollback<bool> hold(settling, true);
        if (geometry.rowCount(path.section) == 0) readRowHeight(path.section);
        geometry.changeRowCount(path.section, difference);
        updateRange();
    }
    if (current && !geometry.contains(*current)) --current->row;
    if (current && current->row < 0) current.reset();
    next.firstDisplaced = {path.section, difference < 0 ? path.row : path.row + 1};
    next.rowShift = -difference * geometry.rowHeight(path.section);
    next.offsetShift = offsetBefore - offset();
    startMotion(next);
    TableAnnouncements::rowsChanged(*q);
}

void TableView::Private::startMotion(RowMotion next) {
    next.run = motion.run + 1;
    next.left = next.animation == RowAnimation::none ? 0 : 1;
    motion = next;
    if (!motion.isRunning()) finishMotion();
    layout();
    if (!motion.isRunning()) return;
    const int run = motion.run;
    AnimationClock::animate(
        q, seconds,
        [this, run](double progress) {
            if (run != motion.run) return;
            motion.left = 1 - progress;
            layout();
        },
        [this, run] {
            if (run != motion.run) return;
            finishMotion();
            layout();
        });
}

void TableView::Private::finishMotion() {
    ++motion.run;
    motion.left = 0;
    if (TableViewCell* cell = cells.at(motion.path)) cell->setGraphicsEffect(nullptr);
    if (motion.leavingCell) cells.recycle(motion.leavingCell);
    motion.leavingCell = nullptr;
}

// A deleted row keeps its position in the content; an inserted one keeps the position that layout() gave it.
void TableView::Private::placeMovingCell() {
    if (!motion.isRunning()) return;
    const double gone = motion.isDeletion ? 1 - motion.left : motion.left;
    TableViewCell* cell = motion.isDeletion ? motion.leavingCell.data() : cells.at(motion.path);
    if (!cell) return;
    if (motion.animation == RowAnimation::fade) setOpacity(cell, 1 - gone);
    const int direction = motion.animation == RowAnimation::left ? -1 : motion.animation == RowAnimation::right ? 1 : 0;
    const int y =
        !motion.isDeletion ? cell->y() : motion.leavingTop - offset() - qRound(motion.offsetShift * motion.left);
    cell->move(qRound(direction * cell->width() * gone), y);
    cell->lower();
}

}  // namespace platform
