#include "screens/settings/LogTextView.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/ui/controls/ScrollThumb.h"
#include "screens/settings/LogRows.h"
#include "screens/settings/LogTextAccessibility.h"
#include "views/Palette.h"

namespace screens {

namespace {

constexpr int inset = 8;  // points between the text and the view's edges
constexpr int tabDistance = 28;
constexpr float selectionOpacity = 0.15F;
constexpr int edgeMilliseconds = 30;

// Rows lie where their letters add up to: nothing moves them but the letters' own widths.
QFont withoutKerning(QFont font) {
    font.setKerning(false);
    return font;
}

// Lays out one row.
class RowLayout {
public:
    RowLayout(const QString& text, const QFont& font, int width) : layout_(text, font) {
        QTextOption option;
        option.setWrapMode(QTextOption::NoWrap);
        option.setTabStopDistance(tabDistance);
        layout_.setTextOption(option);
        layout_.beginLayout();
        line_ = layout_.createLine();
        line_.setLineWidth(width);
        layout_.endLayout();
    }

    void draw(QPainter& painter, QPoint at, int selectionBegin, int selectionEnd) const {
        QList<QTextLayout::FormatRange> selection;
        if (selectionBegin < selectionEnd) {
            QColor color = views::palette::accent;
            color.setAlphaF(selectionOpacity);
            QTextCharFormat format;
            format.setBackground(color);
            selection.append({selectionBegin, selectionEnd - selectionBegin, format});
        }
        layout_.draw(&painter, at, selection);
    }

    int cursorAt(int x) const { return line_.xToCursor(x); }

private:
    QTextLayout layout_;
    QTextLine line_;
};

bool isFinger(const QMouseEvent& event) {
    return event.pointerType() == QPointingDevice::PointerType::Finger ||
           event.source() != Qt::MouseEventNotSynthesized;
}

}  // namespace

LogTextView::LogTextView(const QFont& font, QWidget* parent)
    : QAbstractScrollArea(parent),
      widths_(withoutKerning(font)),
      rowHeight_(int(std::ceil(QFontMetricsF(font).lineSpacing()))),
      kinetic_(verticalScrollBar()),
      thumb_(new platform::ScrollThumb(verticalScrollBar(), this)) {
    installLogTextAccessibility();
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setCursor(Qt::IBeamCursor);
    QPalette colours = palette();
    colours.setColor(QPalette::Base, Qt::white);
    colours.setColor(QPalette::Text, views::palette::ink);
    setPalette(colours);
}

LogTextView::~LogTextView() = default;

void LogTextView::setText(LogText text) {
    kinetic_.stop();
    rows_.reset();
    text_ = std::move(text);
    anchor_ = caret_ = 0;
    verticalScrollBar()->setValue(0);
    if (isVisible()) wrap();
}

// --- Rows and scrolling

void LogTextView::wrap() {
    const int width = std::max(1, viewport()->width() - 2 * inset);
    if (!rows_ || width != wrappedWidth_) {
        const std::size_t top = rows_ ? rows_->rows(firstVisibleRow(), 1).front().begin : 0;
        rows_ = std::make_unique<LogRows>(text_, widths_, float(width), tabDistance);
        wrappedWidth_ = width;
        updateScrollBar();
        if (top > 0) scrollToRow(rows_->rowAt(top));
    }
    updateScrollBar();
    viewport()->update();
}

void LogTextView::updateScrollBar() {
    const qint64 height = qint64(rows_->count()) * rowHeight_ + 2 * inset;
    pointsPerStep_ = int(height / std::numeric_limits<int>::max()) + 1;
    const qint64 hidden = std::max<qint64>(0, height - viewport()->height());
    verticalScrollBar()->setRange(0, int((hidden + pointsPerStep_ - 1) / pointsPerStep_));
    verticalScrollBar()->setPageStep(std::max(1, viewport()->height() - rowHeight_) / pointsPerStep_);
    verticalScrollBar()->setSingleStep(std::max(1, rowHeight_ / pointsPerStep_));
    thumb_->place();
}

void LogTextView::scrollToRow(std::size_t row) {
    verticalScrollBar()->setValue(int((qint64(row) * rowHeight_ + inset) / pointsPerStep_));
}

qint64 LogTextView::contentOffset() const {
    return qint64(verticalScrollBar()->value()) * pointsPerStep_;
}

std::size_t LogTextView::firstVisibleRow() const {
    const auto row = std::size_t(std::max<qint64>(0, contentOffset() - inset) / rowHeight_);
    return std::min(row, rows_->count() - 1);
}

std::size_t LogTextView::visibleRowCount() const {
    return std::size_t(viewport()->height() / rowHeight_) + 2;
}

void LogTextView::resizeEvent(QResizeEvent*) {
    if (isVisible()) wrap();
}

void LogTextView::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    wrap();
}

void LogTextView::scrollContentsBy(int, int) {
    viewport()->update();
    thumb_->place();
    thumb_->flash();
}

void LogTextView::wheelEvent(QWheelEvent* event) {
    kinetic_.stop();
    QAbstractScrollArea::wheelEvent(event);
}

// --- What is in sight

void LogTextView::paintEvent(QPaintEvent*) {
    if (!rows_) return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Text));
    const std::size_t first = firstVisibleRow();
    auto y = int(qint64(first) * rowHeight_ + inset - contentOffset());
    for (const LogRows::Row& row : rows_->rows(first, visibleRowCount())) {
        const auto inRow = [&](std::size_t position) {
            return int(std::clamp(position, row.begin, row.end) - row.begin);
        };
        const RowLayout layout(text_.slice(row.begin, row.end), widths_.font(), wrappedWidth_);
        layout.draw(painter, {inset, y}, inRow(selectionBegin()), inRow(selectionEnd()));
        y += rowHeight_;
    }
}

QString LogTextView::visibleText() const {
    if (!rows_) return {};
    const auto rows = rows_->rows(firstVisibleRow(), visibleRowCount());
    return text_.slice(rows.front().begin, rows.back().end);
}

std::size_t LogTextView::positionAt(QPoint point) const {
    const qint64 y = std::max<qint64>(0, contentOffset() + point.y() - inset);
    const std::size_t row = std::min(std::size_t(y / rowHeight_), rows_->count() - 1);
    const LogRows::Row found = rows_->rows(row, 1).front();
    const RowLayout layout(text_.slice(found.begin, found.end), widths_.font(), wrappedWidth_);
    return found.begin + std::size_t(layout.cursorAt(point.x() - inset));
}

// --- Selection

QString LogTextView::selectedText() const {
    return text_.slice(selectionBegin(), selectionEnd());
}

void LogTextView::selectAll() {
    anchor_ = 0;
    caret_ = text_.size();
    viewport()->update();
}

void LogTextView::select(std::size_t anchor, std::size_t caret) {
    anchor_ = std::min(anchor, text_.size());
    caret_ = std::min(caret, text_.size());
    viewport()->update();
}

std::pair<std::size_t, std::size_t> LogTextView::rowAround(std::size_t position) const {
    if (!rows_) return {0, text_.size()};
    const LogRows::Row row = rows_->rows(rows_->rowAt(position), 1).front();
    return {row.begin, row.next};
}

void LogTextView::bringIntoSight(std::size_t position) {
    if (rows_) scrollToRow(rows_->rowAt(position));
}

void LogTextView::copy() const {
    if (anchor_ != caret_) QGuiApplication::clipboard()->setText(selectedText());
}

void LogTextView::extendSelection(QPoint point) {
    caret_ = positionAt(point);
    viewport()->update();
}

// --- Keys and presses

void LogTextView::keyPressEvent(QKeyEvent* event) {
    kinetic_.stop();
    if (event->matches(QKeySequence::SelectAll)) {
        selectAll();
    } else if (event->matches(QKeySequence::Copy)) {
        copy();
    } else if (event->key() == Qt::Key_Home) {
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMinimum);
    } else if (event->key() == Qt::Key_End) {
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMaximum);
    } else {
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void LogTextView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !rows_) return event->ignore();
    const QPoint point = event->position().toPoint();
    kinetic_.begin(point.y());
    if (isFinger(*event)) {
        press_ = Press::scrolling;
        return;
    }
    press_ = Press::selecting;
    if (!event->modifiers().testFlag(Qt::ShiftModifier)) anchor_ = positionAt(point);
    extendSelection(point);
}

void LogTextView::mouseMoveEvent(QMouseEvent* event) {
    const QPoint point = event->position().toPoint();
    if (press_ == Press::scrolling) kinetic_.follow(point.y());
    if (press_ != Press::selecting) return;
    extendSelection(point);
    if (viewport()->rect().contains(0, point.y())) {
        edgeTimer_.stop();
    } else if (!edgeTimer_.isActive()) {
        edgeTimer_.start(edgeMilliseconds, this);
    }
}

void LogTextView::mouseReleaseEvent(QMouseEvent*) {
    if (press_ == Press::scrolling) kinetic_.letGo();
    press_ = Press::none;
    edgeTimer_.stop();
}

// The further the pointer is beyond the edge, the faster the text comes.
void LogTextView::timerEvent(QTimerEvent* event) {
    if (event->timerId() != edgeTimer_.timerId()) return QAbstractScrollArea::timerEvent(event);
    const QPoint point = viewport()->mapFromGlobal(QCursor::pos());
    const int beyond = point.y() < 0 ? point.y() : std::max(0, point.y() - viewport()->height());
    verticalScrollBar()->setValue(verticalScrollBar()->value() + beyond / pointsPerStep_);
    extendSelection(point);
}

}  // namespace screens
