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

// The animation of one inserted or deleted row and of the rows that it displaces. `left` is the remaining part: 1 to 0.
struct RowMotion {
    IndexPath path;
    RowAnimation animation = RowAnimation::none;
    bool isDeletion = false;
    QPointer<TableViewCell> leavingCell;
    int leavingTop = 0;  // in content coordinates before the deletion
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

// The state of a press until it is recognised as tap, scroll or swipe. `spent`: recognised as none.
struct RowGesture {
    enum class Kind { none, press, scroll, swipe, spent };
    Kind kind = Kind::none;
    QPoint start;
    std::optional<IndexPath> row;  // selected by a tap
    QPointer<QLineEdit> field;     // focused by a tap instead
};

// The table's state. Data source queries and layout are in TableViewLayout.cpp, animated insertion and deletion in
// TableViewMotion.cpp, touch and mouse in TableViewGestures.cpp, the keyboard in TableViewKeys.cpp.
struct TableView::Private {
    explicit Private(TableView* table);

    // Data source and delegate; nullptr when none is set or it has been destroyed.
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

    // Animated insertion and deletion.
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

    // Touch and mouse, in viewport coordinates.
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
    QPointer<QWidget> onlyReachable;  // see setOnlyReachable()
    std::map<int, QWidget*> footers;
    RowMotion motion;
    RowGesture gesture;
    KineticScroller kinetic;
    ScrollThumb* thumb;

    std::optional<IndexPath> selected;
    std::optional<IndexPath> current;  // the keyboard's row
    bool showsCurrent = false;
    QPointer<TableViewCell> uncovered;
    bool needsReload = true;
    bool settling = false;  // rows and cells are inconsistent: layout is suppressed
    bool editing = false;
    bool allowsSelectionDuringEditing = false;
};

}  // namespace platform
