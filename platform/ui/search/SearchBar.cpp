#include "platform/ui/search/SearchBar.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

#include "platform/ui/drawing/Palette.h"
#include "platform/ui/input/Focus.h"
#include "platform/ui/motion/GlidingValue.h"

namespace platform {

namespace {

constexpr int barHeight = 38;
constexpr int side = 8;
constexpr int lensWidth = 32;
constexpr int clearWidth = 32;
constexpr int cancelWidth = 60;
constexpr double seconds = 0.2;

QPen roundPen(const QColor& color, double width) {
    return QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

// Focus by Tab does not start a search; typing does.
bool passesBy(const QFocusEvent& event) {
    return event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason;
}

class ClearButton : public QAbstractButton {
public:
    using QAbstractButton::QAbstractButton;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QPointF centre = QRectF(rect()).center();
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? palette::ink : palette::quiet);
        painter.drawEllipse(centre, 8, 8);
        painter.setPen(roundPen(Qt::white, 1.5));
        painter.drawLine(centre + QPointF(-3, -3), centre + QPointF(3, 3));
        painter.drawLine(centre + QPointF(-3, 3), centre + QPointF(3, -3));
    }
};

class CancelButton : public QAbstractButton {
public:
    using QAbstractButton::QAbstractButton;

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setPen(isDown() ? palette::accentInk : palette::ink);
        painter.drawText(rect(), Qt::AlignCenter, text());
        if (!Focus::isSeen(this)) return;
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette::accentInk, 1.5));
        painter.drawRoundedRect(QRectF(rect()).adjusted(2.5, 5.5, -2.5, -5.5), 6, 6);
    }

    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
            click();
        } else {
            QAbstractButton::keyPressEvent(event);
        }
    }
};

}  // namespace

SearchBar::SearchBar(QWidget* parent)
    : QWidget(parent),
      field_(new QLineEdit(this)),
      clearButton_(new ClearButton(this)),
      cancelButton_(new CancelButton(this)),
      cancelShown_(std::make_unique<GlidingValue>(this, [this] { place(); })) {
    setFixedHeight(barHeight);
    field_->setFrame(false);
    field_->setPlaceholderText(QStringLiteral("Search"));
    field_->setAccessibleName(QStringLiteral("Search"));
    field_->setInputMethodHints(Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText);
    QPalette look = field_->palette();
    look.setColor(QPalette::Base, Qt::white);
    look.setColor(QPalette::Text, palette::ink);
    look.setColor(QPalette::PlaceholderText, palette::hint);
    field_->setPalette(look);
    field_->installEventFilter(this);
    clearButton_->setAccessibleName(QStringLiteral("Clear"));
    clearButton_->setFocusPolicy(Qt::NoFocus);
    clearButton_->hide();
    cancelButton_->setText(QStringLiteral("Cancel"));
    cancelButton_->setAccessibleName(QStringLiteral("Cancel"));
    cancelButton_->hide();
    connect(field_, &QLineEdit::textChanged, this, [this](const QString& text) {
        clearButton_->setVisible(!text.isEmpty());
        Q_EMIT textChanged(text);
    });
    connect(clearButton_, &QAbstractButton::clicked, field_, &QLineEdit::clear);
    connect(clearButton_, &QAbstractButton::clicked, field_, qOverload<>(&QWidget::setFocus));
    connect(cancelButton_, &QAbstractButton::clicked, this, &SearchBar::cancelClicked);
    place();
}

SearchBar::~SearchBar() = default;

QString SearchBar::text() const {
    return field_->text();
}

void SearchBar::setText(const QString& text) {
    field_->setText(text);
}

void SearchBar::setShowsCancelButton(bool shows, bool animated) {
    const double shown = shows ? 1 : 0;
    if (animated) {
        cancelShown_->glideTo(shown, seconds);
    } else {
        cancelShown_->set(shown);
    }
}

bool SearchBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched != field_) return QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::FocusIn && !passesBy(*static_cast<QFocusEvent*>(event))) Q_EMIT didBeginEditing();
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    const bool isSearching = cancelButton_->isVisible() || !text().isEmpty();
    if (!isKey || !isSearching || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape) return false;
    event->accept();  // ShortcutOverride included: Escape ends the search, not the screen
    if (event->type() == QEvent::KeyPress) Q_EMIT cancelClicked();
    return true;
}

// Escape while "Cancel" has the focus.
void SearchBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && cancelButton_->isVisible()) {
        Q_EMIT cancelClicked();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void SearchBar::resizeEvent(QResizeEvent*) {
    place();
}

void SearchBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette::quiet, 1));
    const QRectF line = QRectF(outline()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(line, line.height() / 2, line.height() / 2);
    const QPointF lens = line.topLeft() + QPointF(15, line.height() / 2 - 1.5);
    painter.setPen(roundPen(palette::quiet, 1.5));
    painter.drawEllipse(lens, 5, 5);
    painter.drawLine(lens + QPointF(3.6, 3.6), lens + QPointF(7.5, 7.5));
}

QRect SearchBar::outline() const {
    const int cancel = qRound(cancelWidth * cancelShown_->value());
    return rect().adjusted(side, 4, -qMax(side, cancel), -4);
}

void SearchBar::place() {
    const QRect line = outline();
    field_->setGeometry(line.adjusted(lensWidth - 4, 3, -clearWidth + 2, -3));
    clearButton_->setGeometry(line.right() + 1 - clearWidth, 0, clearWidth, height());
    cancelButton_->setGeometry(line.right() + 1, 0, cancelWidth, height());
    cancelButton_->setVisible(cancelShown_->value() > 0);
    update();
}

}  // namespace platform
