#pragma once

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <algorithm>
#include <memory>
#include <utility>

#include "platform/ui/motion/KineticScroller.h"
#include "screens/settings/CharacterWidths.h"
#include "screens/settings/LogText.h"

namespace platform {
class ScrollThumb;
}

namespace screens {

class LogRows;

// A read-only text of any length, wrapped softly at the view's width, 8 points from its edges. It lays out what is in
// sight, so a frame costs the same whatever the length; a new width costs one pass over the text.
//
// A finger scrolls, and the text goes on with its speed. The mouse selects by dragging, beyond the upper and lower edge
// too; wheel, scroll thumb and the keys Up, Down, Page Up, Page Down, Home and End scroll; Ctrl+A selects everything,
// Ctrl+C copies the selection. Main thread only.
class LogTextView : public QAbstractScrollArea {
    Q_OBJECT
public:
    explicit LogTextView(const QFont& font, QWidget* parent = nullptr);
    ~LogTextView() override;

    // Shows a text from its beginning.
    void setText(LogText text);
    const LogText& text() const { return text_; }

    // What is in sight now, whole rows.
    QString visibleText() const;

    QString selectedText() const;
    void selectAll();
    // Positions in the text. The caret is where the selection ends that begins at the anchor.
    std::size_t anchor() const { return anchor_; }
    std::size_t caret() const { return caret_; }
    void select(std::size_t anchor, std::size_t caret);

    // What is shown in one row with a position: where it begins, and where what follows begins.
    std::pair<std::size_t, std::size_t> rowAround(std::size_t position) const;
    void bringIntoSight(std::size_t position);
    std::size_t positionAt(QPoint point) const;

    // Puts the selection, if there is any, on the clipboard.
    void copy() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    enum class Press { none, scrolling, selecting };

    void wrap();
    void updateScrollBar();
    void scrollToRow(std::size_t row);
    qint64 contentOffset() const;
    std::size_t firstVisibleRow() const;
    std::size_t visibleRowCount() const;
    void extendSelection(QPoint point);
    std::size_t selectionBegin() const { return std::min(anchor_, caret_); }
    std::size_t selectionEnd() const { return std::max(anchor_, caret_); }

    LogText text_;
    CharacterWidths widths_;
    int rowHeight_;                  // points
    std::unique_ptr<LogRows> rows_;  // of text_ at wrappedWidth_; none before the view is first shown
    int wrappedWidth_ = 0;
    int pointsPerStep_ = 1;  // of the scroll bar, whose numbers may be too small for the points
    std::size_t anchor_ = 0;
    std::size_t caret_ = 0;
    Press press_ = Press::none;
    QBasicTimer edgeTimer_;  // runs while a selection is dragged beyond an edge
    platform::KineticScroller kinetic_;
    platform::ScrollThumb* thumb_;
};

}  // namespace screens
