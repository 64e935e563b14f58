#include "platform/ui/controls/TextField.h"

#include <QFocusEvent>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QWindow>
#include <algorithm>

namespace platform {

namespace {

// QLineEdit insets its text by this much on either side; a negative margin cancels it.
constexpr int lineEditInset = 2;
constexpr int smallestFontSize = 7;

bool isLineBreak(QChar character) {
    return character == u'\n' || character == u'\r' || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

}  // namespace

TextFieldDelegate::TextFieldDelegate() : alive_(std::make_shared<const bool>(true)) {}
TextFieldDelegate::~TextFieldDelegate() = default;

TextField::TextField(QWidget* parent) : QLineEdit(parent) {
    setFrame(false);
    setTextMargins(-lineEditInset, 0, -lineEditInset, 0);
    // In an inactive window Qt sends no FocusIn.
    connect(this, &QLineEdit::textEdited, this, [this] {
        if (window()->focusWidget() == this) beginEditing();
    });
    connect(this, &QLineEdit::textEdited, this, &TextField::dropLineBreaks);
    connect(this, &QLineEdit::textChanged, this, &TextField::fitFont);
}

void TextField::setDelegate(TextFieldDelegate* delegate) {
    delegate_ = delegate;
    delegateAlive_ = delegate ? delegate->alive_ : std::shared_ptr<const bool>();
}

TextFieldDelegate* TextField::liveDelegate() const {
    return delegateAlive_.expired() ? nullptr : delegate_;
}

void TextField::becomeFirstResponder() {
    setFocus(Qt::OtherFocusReason);
    beginEditing();
}

void TextField::resignFirstResponder() {
    clearFocus();
    endEditing();
}

void TextField::beginEditing() {
    if (editing_) return;
    editing_ = true;
    watchWindow();
    if (auto* delegate = liveDelegate()) delegate->didBeginEditing(*this);
}

void TextField::endEditing() {
    if (!editing_) return;
    editing_ = false;
    disconnect(focusMoves_);
    setCursorPosition(0);
    if (auto* delegate = liveDelegate()) delegate->didEndEditing(*this);
}

// In an inactive window Qt sends no FocusOut.
void TextField::watchWindow() {
    QWindow* handle = window()->windowHandle();
    if (!handle) return;
    focusMoves_ = connect(handle, &QWindow::focusObjectChanged, this, [this](const QObject* now) {
        if (now != this && !isActiveWindow() && !window()->isHidden()) endEditing();
    });
}

void TextField::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    beginEditing();
}

void TextField::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    const bool comesBack = event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason;
    if (!comesBack) endEditing();
}

void TextField::hideEvent(QHideEvent* event) {
    QLineEdit::hideEvent(event);
    // Hiding the whole window does not end editing.
    if (!event->spontaneous() && !window()->isHidden()) endEditing();
}

void TextField::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && liveDelegate() && !liveDelegate()->shouldReturn(*this)) {
        event->accept();
        return;
    }
    if (event->key() == Qt::Key_Escape && editing_) {
        resignFirstResponder();
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void TextField::dropLineBreaks() {
    const QString typed = text();
    if (std::none_of(typed.begin(), typed.end(), isLineBreak)) return;
    static const QRegularExpression atTheEnds(
        QStringLiteral("^[\\n\\r\\x{2028}\\x{2029}]+|[\\n\\r\\x{2028}\\x{2029}]+$"));
    static const QRegularExpression within(QStringLiteral("[\\n\\r\\x{2028}\\x{2029}]+"));
    QString line = typed;
    line.remove(atTheEnds).replace(within, QStringLiteral(" "));
    const int cursor = cursorPosition() - int(typed.size() - line.size());
    setText(line);
    setCursorPosition(cursor);
}

void TextField::setAdjustsFontSizeToFitWidth(bool adjusts) {
    adjustsFontSize_ = adjusts;
    fitFont();
}

void TextField::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    fitFont();
}

void TextField::fitFont() {
    if (!adjustsFontSize_) return;
    QFont fitted = font();
    if (fullFontSize_ == 0) fullFontSize_ = fitted.pixelSize();
    fitted.setPixelSize(fullFontSize_);
    const double needed = QFontMetricsF(fitted).horizontalAdvance(text());
    if (needed > width()) {
        fitted.setPixelSize(qMax(smallestFontSize, int(fullFontSize_ * width() / needed)));
    }
    if (fitted.pixelSize() != font().pixelSize()) setFont(fitted);
}

}  // namespace platform
