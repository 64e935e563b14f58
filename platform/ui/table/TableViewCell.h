#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <memory>

namespace platform {

class CellDeletion;
class Switch;

// One row of a TableView: a content view, an optional accessory at the right, a background, and the states that the
// table sets (selected, editing). Main thread only.
//
// Reuse contract: a cell that scrolls out of view is returned to its table's pool, and dequeueReusableCell() hands it
// out for any other row. The data source must set every property that differs between rows.
class TableViewCell : public QWidget {
    Q_OBJECT
public:
    enum class Accessory { none, disclosureIndicator };
    enum class SelectionStyle { none, gray };

    explicit TableViewCell(const QString& reuseIdentifier, QWidget* parent = nullptr);
    ~TableViewCell() override;

    const QString& reuseIdentifier() const { return reuseIdentifier_; }

    // The parent of the cell's own subviews: the cell's width minus accessory and, in edit mode, delete control.
    QWidget* contentView() const { return contentView_; }

    void setAccessory(Accessory accessory);
    Accessory accessory() const { return accessory_; }

    // A control in place of the accessory, centred vertically, 10 points from the right edge. Owned by the cell, which
    // deletes the previous one; nullptr removes it.
    void setAccessoryView(QWidget* view);
    QWidget* accessoryView() const { return accessoryView_; }
    // The accessory view if it is a switch, which the row's keys then toggle; else nullptr.
    Switch* accessorySwitch() const;

    // An image stretched over the whole cell, behind its subviews.
    void setBackgroundImage(const QString& resourceName);

    void setSelectionStyle(SelectionStyle style) { selectionStyle_ = style; }
    SelectionStyle selectionStyle() const { return selectionStyle_; }

    // Indents the content by level times width, in points.
    void setIndentationLevel(int level);
    void setIndentationWidth(int points);
    int indentationLevel() const { return indentationLevel_; }
    int indentationWidth() const { return indentationWidth_; }

    // Called by the table on every shown cell and on every cell before it is shown. An override calls the base class
    // first.
    virtual void setSelected(bool selected, bool animated);
    virtual void setEditing(bool editing, bool animated);
    virtual void prepareForReuse();

    bool isSelected() const { return selected_; }
    bool isEditing() const { return editing_; }

    // For the table. A deletable cell shows its delete control in edit mode, and its content can be moved to the left,
    // which uncovers "Delete" at its right edge.
    void setDeletable(bool deletable, bool animated);
    bool isDeletable() const { return deletable_; }
    void pushAside(int points);
    void glideAside(bool open);
    bool isOpeningAside() const;
    static int deleteWidth();
    // For the table: draws the focus frame of the current row.
    void setShowsFocus(bool shows);

Q_SIGNALS:
    void deleteControlTapped();
    void deleteTapped();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    // Sets the geometry of content view and accessory. An override calls the base class first.
    virtual void layoutSubviews();

private:
    CellDeletion& deletion();
    int pushedAside() const;

    QString reuseIdentifier_;
    std::unique_ptr<CellDeletion> deletion_;  // made on first use
    QWidget* contentView_ = nullptr;
    QPointer<QWidget> accessoryView_;
    Accessory accessory_ = Accessory::none;
    SelectionStyle selectionStyle_ = SelectionStyle::gray;
    QString backgroundResource_;
    int indentationLevel_ = 0;
    int indentationWidth_ = 10;
    bool selected_ = false;
    bool editing_ = false;
    bool deletable_ = false;
    bool showsFocus_ = false;
};

}  // namespace platform
