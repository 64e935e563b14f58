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

// What a table shows. Not owned by the table; destroying one that a table still uses is a programming error, caught
// by an assertion in debug builds. Asked on the main thread only.
class TableViewDataSource {
public:
    TableViewDataSource();
    virtual ~TableViewDataSource();
    TableViewDataSource(const TableViewDataSource&) = delete;
    TableViewDataSource& operator=(const TableViewDataSource&) = delete;

    virtual int numberOfSectionsInTableView(TableView& table);
    virtual int numberOfRowsInSection(TableView& table, int section) = 0;

    // Returns the cell for a row, taken from table.dequeueReusableCell() or newly made. The cell handed out may last
    // have shown any other row: set everything that may differ. The table owns it from here on.
    virtual TableViewCell* cellForRowAtIndexPath(TableView& table, IndexPath indexPath) = 0;

    // Whether the row can be deleted; by default it cannot.
    virtual bool canEditRowAtIndexPath(TableView& table, IndexPath indexPath);
    virtual EditingStyle editingStyleForRowAtIndexPath(TableView& table, IndexPath indexPath);

    // The person confirmed the deletion of a row. The data source changes its data and then calls deleteRow(), or
    // reloadData(); until it does, the table keeps showing the row.
    virtual void commitEditingStyle(TableView& table, EditingStyle style, IndexPath indexPath);

private:
    friend class TableView;
    std::shared_ptr<const bool> alive_;
};

// How a table looks and what a tap on a row does. The same rules of ownership as for the data source.
class TableViewDelegate {
public:
    TableViewDelegate();
    virtual ~TableViewDelegate();
    TableViewDelegate(const TableViewDelegate&) = delete;
    TableViewDelegate& operator=(const TableViewDelegate&) = delete;

    virtual void didSelectRowAtIndexPath(TableView& table, IndexPath indexPath);

    // Points. All rows of a section are equally high: the table asks for row 0 only, so that the place of any of a
    // million rows is arithmetic.
    virtual int heightForRowAtIndexPath(TableView& table, IndexPath indexPath);
    virtual int heightForFooterInSection(TableView& table, int section);

    // A cell is about to be placed in the table. One that is only made to be read to a person is never placed.
    virtual void willDisplayCell(TableView& table, TableViewCell& cell, IndexPath indexPath);

    // A new widget that the table takes over, or nullptr for none.
    virtual QWidget* viewForFooterInSection(TableView& table, int section);

private:
    friend class TableView;
    std::shared_ptr<const bool> alive_;
};

// A vertically scrolling list of sections, rows and footers under an optional header view. Keeps only the visible
// cells and a margin, so a frame costs what is visible, whatever the number of rows. A field that is being edited in a
// row stays in sight when the table becomes smaller. Main thread only.
//
// Touch and mouse: a press that moves vertically scrolls (and goes on with the finger's speed when let go), one that
// moves left on an editable row uncovers "Delete", one that stays selects the row. Wheel, scroll-bar thumb and the
// keys Up, Down, Page Up, Page Down, Home, End scroll or move the current row; Return selects it, and so does Space,
// which turns its switch if it has one; Delete uncovers "Delete" on it and a second Delete, or Return, confirms.
class TableView : public QAbstractScrollArea, public FocusScope {
    Q_OBJECT
public:
    explicit TableView(QWidget* parent = nullptr);
    ~TableView() override;

    void setDataSource(TableViewDataSource* dataSource);
    void setDelegate(TableViewDelegate* delegate);

    // Scrolls with the rows, above the first one, at its own height. The table owns it.
    void setHeaderView(QWidget* view);
    QWidget* headerView() const;

    // Asks the data source for everything again; keeps the scroll position where the new content allows it. Ends
    // the editing of a field in a cell first, so that what was typed reaches its row.
    void reloadData();

    // A cell that was made with this identifier and is not in use, or nullptr. Already prepared for reuse.
    TableViewCell* dequeueReusableCell(const QString& reuseIdentifier);

    // Every row that has a cell, from top to bottom: those in sight and those in the margin, which come into sight as
    // they are. This is how news (an icon has come, a state has changed) reaches rows that are built already; all
    // others ask the data source when they come near. `tell` changes cells, not rows.
    void forEachCell(const std::function<void(IndexPath, TableViewCell&)>& tell) const;
    // The cell of one row, or nullptr when the row is neither in sight nor in the margin.
    TableViewCell* cellForRow(IndexPath indexPath) const;
    std::optional<IndexPath> indexPathForCell(const QWidget* cellOrDescendant) const;

    // Where a row lies in the viewport's coordinates, visible or not.
    QRect rectForRow(IndexPath indexPath) const;

    // Tell the table that the data source gained or lost one row; call after changing the data. The rows around it
    // close up or make room; a row that leaves slides to the left or right, or fades. When the data source's number of
    // rows does not agree, the table reloads.
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

    // Scrolls as little as needed for the row to be wholly in sight, as far as the table is high enough.
    void scrollToRow(IndexPath indexPath);

    // Hides an uncovered "Delete" or ends the editing of a field in a row; returns whether there was one to end. What
    // Escape does first.
    bool endsRowEditing();

    // While something lies over the table, only this part of its header view can be reached by keyboard and by
    // assistance; nullptr once nothing does.
    void setOnlyReachable(QWidget* partOfHeader);
    // Whether the rows can be reached, or only a part of the header view.
    bool areRowsReachable() const;

    // The header view, or the part of it that can be reached.
    QWidget* partBefore() const override;
    // The cells with a row in sight or in the margin, from top to bottom.
    std::vector<QWidget*> partsAfter() const override;
    void bringIntoSight(const QWidget* part) override;
    // No row shows that it has the focus any more, until a key moves that.
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
