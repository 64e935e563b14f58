#include "platform/ui/table/TableViewCell.h"

#include <QGraphicsEffect>
#include <QKeyEvent>
#include <QPainter>

#include "platform/ui/controls/Switch.h"
#include "platform/ui/drawing/Images.h"
#include "platform/ui/drawing/Palette.h"
#include "platform/ui/table/CellDeletion.h"

namespace platform {

namespace {

constexpr int accessoryMargin = 10;
constexpr int chevronWidth = 7;
constexpr int chevronHeight = 12;
constexpr int chevronMargin = 12;

void drawChevron(QPainter& painter, const QRect& row) {
    const QPointF tip(row.left() + row.width() - chevronMargin, row.top() + row.height() / 2.0);
    const QPointF upper = tip + QPointF(-chevronWidth, -chevronHeight / 2.0);
    const QPointF lower = tip + QPointF(-chevronWidth, chevronHeight / 2.0);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette::quiet, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({upper, tip, lower}));
}

void drawFocus(QPainter& painter, const QRect& row) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette::accentInk, 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(row).adjusted(3, 3, -3, -3), 6, 6);
}

}  // namespace

TableViewCell::TableViewCell(const QString& reuseIdentifier, QWidget* parent)
    : QWidget(parent), reuseIdentifier_(reuseIdentifier), contentView_(new QWidget(this)) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    resize(320, 50);
    contentView_->setGeometry(rect());
}

TableViewCell::~TableViewCell() = default;

void TableViewCell::setAccessory(Accessory accessory) {
    accessory_ = accessory;
    layoutSubviews();
    update();
}

void TableViewCell::setAccessoryView(QWidget* view) {
    if (accessoryView_ == view) return;
    if (accessoryView_) {
        accessoryView_->hide();
        accessoryView_->deleteLater();  // the call may come from one of its own signals
    }
    accessoryView_ = view;
    if (view) {
        view->setParent(this);
        view->adjustSize();
        view->show();
    }
    layoutSubviews();
}

Switch* TableViewCell::accessorySwitch() const {
    return qobject_cast<Switch*>(accessoryView_.data());
}

void TableViewCell::setBackgroundImage(const QString& resourceName) {
    backgroundResource_ = resourceName;
    update();
}

void TableViewCell::setIndentationLevel(int level) {
    indentationLevel_ = level;
    layoutSubviews();
}

void TableViewCell::setIndentationWidth(int points) {
    indentationWidth_ = points;
    layoutSubviews();
}

void TableViewCell::setSelected(bool selected, bool) {
    if (selected_ == selected) return;
    selected_ = selected;
    update();
}

void TableViewCell::setEditing(bool editing, bool animated) {
    editing_ = editing;
    setDeletable(deletable_, animated);
}

void TableViewCell::prepareForReuse() {
    setSelected(false, false);
    setGraphicsEffect(nullptr);
    showsFocus_ = false;
    if (deletion_) deletion_->uncover(0);
}

void TableViewCell::setDeletable(bool deletable, bool animated) {
    deletable_ = deletable;
    const bool showsControl = deletable && editing_;
    if (showsControl || deletion_) deletion().showControl(showsControl, animated);
}

void TableViewCell::pushAside(int points) {
    deletion().uncover(points);
}

void TableViewCell::glideAside(bool open) {
    deletion().glideTo(open ? CellDeletion::buttonWidth : 0);
}

bool TableViewCell::isOpeningAside() const {
    return deletion_ && deletion_->isOpening();
}

int TableViewCell::deleteWidth() {
    return CellDeletion::buttonWidth;
}

void TableViewCell::setShowsFocus(bool shows) {
    if (showsFocus_ == shows) return;
    showsFocus_ = shows;
    update();
}

void TableViewCell::resizeEvent(QResizeEvent*) {
    layoutSubviews();
}

void TableViewCell::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    const QRect row = rect().translated(-pushedAside(), 0);
    if (!backgroundResource_.isEmpty())
        painter.drawPixmap(row, Images::named(backgroundResource_, devicePixelRatioF()));
    if (selected_ && selectionStyle_ == SelectionStyle::gray) painter.fillRect(row, palette::pressedVeil);
    if (accessory_ == Accessory::disclosureIndicator && !accessoryView_) drawChevron(painter, row);
    if (showsFocus_) drawFocus(painter, row);
}

// Keys for a control inside the row must not propagate to the table.
void TableViewCell::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
        case Qt::Key_Delete:
            event->accept();
            return;
        default:
            QWidget::keyPressEvent(event);
    }
}

void TableViewCell::layoutSubviews() {
    const int aside = pushedAside();
    const int left = (deletion_ ? deletion_->controlShift() : 0) + indentationLevel_ * indentationWidth_;
    int right = width();
    if (accessoryView_) {
        const QSize size = accessoryView_->size();
        right -= accessoryMargin + size.width();
        accessoryView_->move(right - aside, (height() - size.height()) / 2);
    } else if (accessory_ == Accessory::disclosureIndicator) {
        right -= chevronMargin + chevronWidth + accessoryMargin;
    }
    contentView_->setGeometry(left - aside, 0, qMax(0, right - left), height());
    if (deletion_) deletion_->layout(size());
}

CellDeletion& TableViewCell::deletion() {
    if (!deletion_) {
        deletion_ = std::make_unique<CellDeletion>(this, [this] {
            layoutSubviews();
            update();
        });
        connect(deletion_->controlButton(), &QAbstractButton::clicked, this, &TableViewCell::deleteControlTapped);
        connect(deletion_->deleteButton(), &QAbstractButton::clicked, this, &TableViewCell::deleteTapped);
    }
    return *deletion_;
}

int TableViewCell::pushedAside() const {
    return deletion_ ? deletion_->uncovered() : 0;
}

}  // namespace platform
