#pragma once

#include <QAbstractScrollArea>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/ui/input/FocusScope.h"
#include "platform/ui/table/IndexPath.h"

namespace platform {

class TableView;
class TableViewCell;

enum class EditingStyle { none, remove };
enum class RowAnimation { none, fade, left, right };

// Provides the rows of a table. Not owned by the table. Destroying one that a table still uses is an error, caught by
// an assertion in debug builds. Called on the main thread only.
class TableViewDataSource {
public:
    TableViewDataSource();
    virtual ~TableViewDataSource();
    TableViewDataSource(const TableViewDataSource&) = delete;
    TableViewDataSource& operator=(const TableViewDataSource&) = delete;

    virtual int numberOfSectionsInTableView(TableView& table);
    virtual int numberOfRowsInSection(TableView& table, int section) = 0;

    // Returns the cell for a row, from table.dequeueReusableCell() or newly made. A reused cell may have shown any
    // other row: set every property that differs between rows. The table takes ownership.
    virtual TableViewCell* cellForRowAtIndexPath(TableView& table, IndexPath indexPath) = 0;

    // Whether the row can be deleted; by default it cannot.
    virtual bool canEditRowAtIndexPath(TableView& table, IndexPath indexPath);
    virtual EditingStyle editingStyleForRowAtIndexPath(TableView& table, IndexPath indexPath);

    // The user has confirmed the deletion of a row. The data source changes its data, then calls deleteRow() or
    // reloadData(); until then the table keeps showing the row.
    virtual void commitEditingStyle(TableView& table, EditingStyle style, IndexPath indexPath);

private:
    friend class TableView;
    std::shared_ptr<const bool> alive_;
};

// The geometry of a table and the reaction to a tap on a row. Ownership as for the data source.
class TableViewDelegate {
public:
    TableViewDelegate();
    virtual ~TableViewDelegate();
    TableViewDelegate(const TableViewDelegate&) = delete;
    TableViewDelegate& operator=(const TableViewDelegate&) = delete;

    virtual void didSelectRowAtIndexPath(TableView& table, IndexPath indexPath);

    // Points. All rows of a section have the same height: the table asks for row 0 only, so that the position of a row
    // is computed in constant time.
    virtual int heightForRowAtIndexPath(TableView& table, IndexPath indexPath);
    virtual int heightForFooterInSection(TableView& table, int section);

    // Called before a cell is placed in the table; not for a cell that is filled only for a screen reader.
    virtual void willDisplayCell(TableView& table, TableViewCell& cell, IndexPath indexPath);

    // Returns a new widget, owned by the table, or nullptr.
    virtual QWidget* viewForFooterInSection(TableView& table, int section);

private:
    friend class TableView;
    std::shared_ptr<const bool> alive_;
};

// A vertically scrolling list of sections, rows and footers under an optional header view. Only the visible rows and a
// margin of 60 points have cells: the cost of a frame does not depend on the number of rows. A row whose field is being
// edited is scrolled into view when the table shrinks. Main thread only.
//
// Touch and mouse: a press that moves vertically scrolls, with kinetic scrolling after release; one that moves left on
// an editable row uncovers "Delete"; one that does not move selects the row. Wheel and thumb scroll. The keys Up, Down,
// Page Up, Page Down, Home and End move the current row; Return selects it, Space toggles its switch or, without one,
// selects it; Delete uncovers "Delete", a second Delete or Return confirms.
class TableView : public QAbstractScrollArea, public FocusScope {
    Q_OBJECT
public:
    explicit TableView(QWidget* parent = nullptr);
    ~TableView() override;

    void setDataSource(TableViewDataSource* dataSource);
    void setDelegate(TableViewDelegate* delegate);

    // Lies above the first row at its own height and scrolls with the rows. Owned by the table.
    void setHeaderView(QWidget* view);
    QWidget* headerView() const;

    // Queries the data source anew and keeps the scroll offset where the new content allows it. Ends the editing of a
    // field in a cell first, so that the typed text reaches its row.
    void reloadData();

    // An unused cell with this identifier, prepared for reuse, or nullptr.
    TableViewCell* dequeueReusableCell(const QString& reuseIdentifier);

    // Calls `tell` for every row that has a cell, from top to bottom: visible rows and those in the margin, which will
    // scroll into view unchanged. Use it to apply a change (an icon was loaded) to cells that are already filled; all
    // other rows get it from the data source. `tell` must not change the rows.
    void forEachCell(const std::function<void(IndexPath, TableViewCell&)>& tell) const;
    // The cell of a row, or nullptr when the row is neither visible nor in the margin.
    TableViewCell* cellForRow(IndexPath indexPath) const;
    std::optional<IndexPath> indexPathForCell(const QWidget* cellOrDescendant) const;

    // The frame of a row in viewport coordinates, visible or not.
    QRect rectForRow(IndexPath indexPath) const;

    // Call after the data source has gained or lost one row. The rows below are moved and the row itself slides or
    // fades, animated. When the data source's row count does not match, the table reloads instead.
    void insertRow(IndexPath indexPath, RowAnimation animation);
    void deleteRow(IndexPath indexPath, RowAnimation animation);

    void deselectRow(IndexPath indexPath, bool animated);
    std::optional<IndexPath> indexPathForSelectedRow() const;

    void setEditing(bool editing, bool animated);
    bool isEditing() const;
    void setAllowsSelectionDuringEditing(bool allows);

    // Points from the top of the header to the top of the viewport.
    int contentOffset() const;
    void setContentOffset(int points);
    int contentHeight() const;

    // Scrolls by the least amount that makes the whole row visible.
    void scrollToRow(IndexPath indexPath);

    // Hides an uncovered "Delete", or ends the editing of a field in a row; returns whether either applied. The first
    // effect of Escape.
    bool endsRowEditing();

    // Restricts keyboard and assistive technology to a part of the header view, while another view covers the table;
    // nullptr lifts the restriction.
    void setOnlyReachable(QWidget* partOfHeader);
    // False while setOnlyReachable() restricts the table to a part of its header.
    bool areRowsReachable() const;

    // The header view, or its only reachable part.
    QWidget* partBefore() const override;
    // The cells of the visible rows and of the margin, from top to bottom; none while the rows are not reachable.
    std::vector<QWidget*> partsAfter() const override;
    void bringIntoSight(const QWidget* part) override;
    // No row draws the focus frame until the next navigation key.
    void hideFocus() override;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void setNeedsReload();

    friend class TableRows;
    struct Private;
    std::unique_ptr<Private> d_;
};

}  // namespace platform
