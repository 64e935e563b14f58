#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <memory>

namespace platform {

class CellDeletion;
class Switch;

// One row of a TableView: a content view, an optional accessory at the right, a background, and the states that the
// table gives it (selected, editing). Main thread only.
//
// Reuse contract: a cell that scrolls out of sight goes back to its table and is handed out again by
// dequeueReusableCell() for any other row. Whoever fills a cell sets everything that may differ between rows.
class TableViewCell : public QWidget {
    Q_OBJECT
public:
    enum class Accessory { none, disclosureIndicator };
    enum class SelectionStyle { none, gray };

    explicit TableViewCell(const QString& reuseIdentifier, QWidget* parent = nullptr);
    ~TableViewCell() override;

    const QString& reuseIdentifier() const { return reuseIdentifier_; }

    // Holds the cell's own subviews; as wide as the cell less its accessory and, in edit mode, its delete control.
    QWidget* contentView() const { return contentView_; }

    void setAccessory(Accessory accessory);
    Accessory accessory() const { return accessory_; }

    // A control in the accessory's place, centred vertically, 10 points from the right edge. The cell owns it and
    // destroys the one before; nullptr clears it.
    void setAccessoryView(QWidget* view);
    QWidget* accessoryView() const { return accessoryView_; }
    // The accessory, when it is a switch: the row's keys turn it.
    Switch* accessorySwitch() const;

    // Painted over the whole cell, behind everything else, stretched in width.
    void setBackgroundImage(const QString& resourceName);

    void setSelectionStyle(SelectionStyle style) { selectionStyle_ = style; }
    SelectionStyle selectionStyle() const { return selectionStyle_; }

    // Points by which the content moves right: level times width.
    void setIndentationLevel(int level);
    void setIndentationWidth(int points);
    int indentationLevel() const { return indentationLevel_; }
    int indentationWidth() const { return indentationWidth_; }

    // The table calls these on every visible cell and on every cell that becomes visible; a subclass that overrides
    // one calls the base class first.
    virtual void setSelected(bool selected, bool animated);
    virtual void setEditing(bool editing, bool animated);
    virtual void prepareForReuse();

    bool isSelected() const { return selected_; }
    bool isEditing() const { return editing_; }

    // For the table. A deletable cell shows its delete control in edit mode and can be pushed aside, which uncovers
    // "Delete" at its right edge.
    void setDeletable(bool deletable, bool animated);
    bool isDeletable() const { return deletable_; }
    void pushAside(int points);
    void glideAside(bool open);
    bool isOpeningAside() const;
    static int deleteWidth();
    // For the table: marks the row that the keyboard is on.
    void setShowsFocus(bool shows);

Q_SIGNALS:
    void deleteControlTapped();
    void deleteTapped();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    // Places content view and accessory; a subclass that adds to it calls the base class first.
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
