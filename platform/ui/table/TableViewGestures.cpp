// Touch and mouse: recognition of taps, scrolls and swipes.
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/ui/table/TableViewPrivate.h"

namespace platform {

namespace {

constexpr int slop = 8;  // points of movement up to which a press counts as a tap
constexpr int rowsPerNotch = 3;

// Beyond the button's width the row moves by a third of the distance (rubber band).
int pushedBy(int distance) {
    const int width = TableViewCell::deleteWidth();
    return distance <= width ? std::max(0, distance) : width + (distance - width) / 3;
}

}  // namespace

// Events of a field in a row. While the field is not being edited, presses on it are handled as presses on the row.
bool TableView::Private::fieldEvent(QLineEdit* field, QEvent* event) {
    switch (event->type()) {
        case QEvent::FocusIn:
            field->setFocusPolicy(Qt::StrongFocus);
            keepEditingInSight();
            return false;
        case QEvent::FocusOut:
            field->setFocusPolicy(Qt::TabFocus);
            QMetaObject::invokeMethod(
                q, [this] { catchLostFocus(); }, Qt::QueuedConnection);
            return false;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            if (field->hasFocus()) return false;
            break;
        case QEvent::MouseMove:
        case QEvent::MouseButtonRelease:
            break;
        default:
            return false;
    }
    return mouseEvent(static_cast<QMouseEvent*>(event), field->isEnabled() ? field : nullptr);
}

// When a field has lost the focus to no other widget, the table takes it, so that the arrow keys keep working.
void TableView::Private::catchLostFocus() {
    if (q->isVisible() && !q->window()->focusWidget()) q->setFocus(Qt::OtherFocusReason);
}

// The event may belong to any widget in the viewport, and rows may have moved since the press: only its global position
// is reliable.
bool TableView::Private::mouseEvent(QMouseEvent* event, QLineEdit* field) {
    const QPoint position = q->viewport()->mapFromGlobal(event->globalPosition().toPoint());
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            if (event->button() != Qt::LeftButton) return false;
            press(position, field);
            return true;
        case QEvent::MouseMove:
            if (gesture.kind == RowGesture::Kind::none || !(event->buttons() & Qt::LeftButton)) return false;
            move(position);
            return true;
        case QEvent::MouseButtonRelease:
            if (gesture.kind == RowGesture::Kind::none || event->button() != Qt::LeftButton) return false;
            release();
            return true;
        default:
            return false;
    }
}

void TableView::Private::press(QPoint position, QLineEdit* field) {
    const bool wasMoving = kinetic.begin(position.y());
    const bool wasUncovered = closeUncovered();
    cancelGesture();  // the release of an earlier press may have been lost
    q->hideFocus();
    gesture = {RowGesture::Kind::press, position, std::nullopt, nullptr};
    if (wasMoving || wasUncovered) return;
    gesture.row = cells.rowAt(position);
    gesture.field = field;
    highlight(true);
}

void TableView::Private::move(QPoint position) {
    const QPoint way = position - gesture.start;
    if (gesture.kind == RowGesture::Kind::press) {
        if (std::abs(way.y()) > slop && std::abs(way.y()) >= std::abs(way.x())) {
            highlight(false);
            gesture.kind = RowGesture::Kind::scroll;
        } else if (std::abs(way.x()) > slop) {
            highlight(false);
            TableViewCell* cell = gesture.row ? cells.at(*gesture.row) : nullptr;
            const bool swipes = way.x() < 0 && cell && !editing && canDelete(*gesture.row);
            if (swipes) {
                endEditing();
                uncover(cell);
            }
            gesture.kind = swipes ? RowGesture::Kind::swipe : RowGesture::Kind::spent;
        }
    }
    if (gesture.kind == RowGesture::Kind::scroll) kinetic.follow(position.y());
    if (gesture.kind == RowGesture::Kind::swipe && uncovered) uncovered->pushAside(pushedBy(-way.x()));
}

void TableView::Private::release() {
    const RowGesture done = std::exchange(gesture, {});
    switch (done.kind) {
        case RowGesture::Kind::press:
            tap(done);
            break;
        case RowGesture::Kind::scroll:
            kinetic.letGo();
            break;
        case RowGesture::Kind::swipe:
            if (uncovered) uncovered->glideAside(true);
            break;
        default:
            break;
    }
}

void TableView::Private::cancelGesture() {
    if (gesture.kind == RowGesture::Kind::press) highlight(false);
    if (gesture.kind == RowGesture::Kind::swipe) closeUncovered();
    gesture = {};
}

void TableView::Private::tap(const RowGesture& done) {
    const bool isOnRow = done.row && geometry.contains(*done.row);
    if (isOnRow) current = done.row;
    if (done.field && done.field->isEnabled()) {
        const QPoint inField = done.field->mapFrom(q->viewport(), done.start);
        done.field->setFocus(Qt::MouseFocusReason);
        done.field->setCursorPosition(done.field->cursorPositionAt(inField));
    } else if (isOnRow && canSelect()) {
        select(*done.row);
    }
}

void TableView::Private::highlight(bool highlighted) const {
    TableViewCell* cell = gesture.row ? cells.at(*gesture.row) : nullptr;
    if (cell && canSelect() && !gesture.field) cell->setSelected(highlighted || selected == gesture.row, false);
}

void TableView::Private::select(IndexPath path) {
    if (selected && selected != path) q->deselectRow(*selected, false);
    selected = path;
    if (TableViewCell* cell = cells.at(path)) cell->setSelected(true, false);
    if (TableViewDelegate* told = asksDelegate()) told->didSelectRowAtIndexPath(*q, path);
}

void TableView::Private::uncover(TableViewCell* cell) {
    if (uncovered != cell) closeUncovered();
    uncovered = cell;
}

// Returns whether "Delete" was uncovered.
bool TableView::Private::closeUncovered() {
    TableViewCell* cell = std::exchange(uncovered, nullptr);
    if (!cell) return false;
    cell->glideAside(false);
    return true;
}

void TableView::Private::commitDeletion(IndexPath path) {
    endEditing();
    if (TableViewDataSource* source = asksData()) source->commitEditingStyle(*q, EditingStyle::remove, path);
    closeUncovered();
    tellCurrent();
}

void TableView::Private::wheel(QWheelEvent* event) {
    const int rowHeight = geometry.totalRows() > 0 ? geometry.rowHeight(geometry.atOrdinal(0).section) : 0;
    const int notchedPoints = qRound(event->angleDelta().y() / 120.0 * rowsPerNotch * rowHeight);
    const int points = event->pixelDelta().isNull() ? notchedPoints : event->pixelDelta().y();
    q->verticalScrollBar()->setValue(offset() - points);
    event->accept();
}

}  // namespace platform
