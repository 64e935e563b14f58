#pragma once

#include <QLineEdit>
#include <QPointer>
#include <map>
#include <memory>
#include <optional>

#include "platform/ui/controls/ScrollThumb.h"
#include "platform/ui/motion/KineticScroller.h"
#include "platform/ui/table/TableCells.h"
#include "platform/ui/table/TableGeometry.h"
#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"

class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace platform {

// One row on its way in or out, and how far the rows around it still are from their places. `left` runs from 1 to 0.
struct RowMotion {
    IndexPath path;
    RowAnimation animation = RowAnimation::none;
    bool isDeletion = false;
    QPointer<TableViewCell> leavingCell;
    int leavingTop = 0;  // in the content as it was before
    IndexPath firstDisplaced;
    int rowShift = 0;
    int offsetShift = 0;
    double left = 0;
    int run = 0;

    bool isRunning() const { return left > 0; }
    int displacement(IndexPath of) const {
        return qRound(left * ((of >= firstDisplaced ? rowShift : 0) - offsetShift));
    }
    int reach() const { return isRunning() ? std::abs(rowShift) + std::abs(offsetShift) : 0; }
};

// A press on its way to becoming a tap, a scroll or a swipe.
struct RowGesture {
    enum class Kind { none, press, scroll, swipe, spent };
    Kind kind = Kind::none;
    QPoint start;
    std::optional<IndexPath> row;  // what a tap would select
    QPointer<QLineEdit> field;     // what a tap would focus instead
};

// The table's insides. Asking and laying out is in TableViewLayout.cpp, rows that come and go in TableViewMotion.cpp,
// fingers in TableViewGestures.cpp, keys in TableViewKeys.cpp.
struct TableView::Private {
    explicit Private(TableView* table);

    // Who is asked.
    TableViewDataSource* asksData() const;
    TableViewDelegate* asksDelegate() const;
    bool canDelete(IndexPath path) const;

    // Layout.
    void ensureLoaded();
    void reload();
    void readGeometry();
    void readRowHeight(int section);
    void updateRange();
    void headerChanged();
    void layout();
    int offset() const;
    int headerHeight() const;
    std::pair<int, int> rowsToKeep() const;
    std::optional<IndexPath> firstInSight() const;
    void endEditingOf(const std::function<bool(IndexPath)>& rows);
    void endEditing();
    void keepEditingInSight();
    TableViewCell* cellFor(IndexPath path);
    void withCell(IndexPath path, const std::function<void(const TableViewCell&)>& ask);
    void adopt(TableViewCell* cell);
    void place(IndexPath path, TableViewCell* cell);
    void placeFooters();
    void dropFooters();
    void showFocus();

    // Rows that come and go.
    void changeRows(IndexPath path, int difference, RowAnimation animation);
    void startMotion(RowMotion next);
    void finishMotion();
    void placeMovingCell();

    // Selecting and deleting.
    void select(IndexPath path);
    bool canSelect() const { return !editing || allowsSelectionDuringEditing; }
    void uncover(TableViewCell* cell);
    bool closeUncovered();
    void commitDeletion(IndexPath path);
    void toggle(IndexPath path);

    // Fingers; positions are the viewport's.
    bool fieldEvent(QLineEdit* field, QEvent* event);
    void catchLostFocus();
    bool mouseEvent(QMouseEvent* event, QLineEdit* field);
    void press(QPoint position, QLineEdit* field);
    void move(QPoint position);
    void release();
    void cancelGesture();
    void tap(const RowGesture& done);
    void highlight(bool highlighted) const;
    void wheel(QWheelEvent* event);

    // Keys.
    bool key(QKeyEvent* event);
    bool moveCurrentBy(int rows);
    void moveCurrentTo(IndexPath path);
    void tellCurrent();
    void enter(bool bySpace);
    void deleteCurrent();

    TableView* q;
    TableViewDataSource* dataSource = nullptr;
    std::weak_ptr<const bool> dataSourceAlive;
    TableViewDelegate* delegate = nullptr;
    std::weak_ptr<const bool> delegateAlive;

    TableGeometry geometry;
    TableCells cells;
    QPointer<QWidget> header;
    QPointer<QWidget> onlyReachable;  // of the header, while something covers the rest
    std::map<int, QWidget*> footers;
    RowMotion motion;
    RowGesture gesture;
    KineticScroller kinetic;
    ScrollThumb* thumb;

    std::optional<IndexPath> selected;
    std::optional<IndexPath> current;  // the row that the keyboard is on
    bool showsCurrent = false;
    QPointer<TableViewCell> uncovered;
    bool needsReload = true;
    bool settling = false;  // rows and cells do not agree just now: no layout
    bool editing = false;
    bool allowsSelectionDuringEditing = false;
};

}  // namespace platform
