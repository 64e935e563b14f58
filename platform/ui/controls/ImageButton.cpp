#include "platform/ui/controls/ImageButton.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

#include "platform/ui/drawing/Images.h"
#include "platform/ui/drawing/Palette.h"
#include "platform/ui/input/Focus.h"

namespace platform {

namespace {

constexpr QColor dimming(0, 0, 0, 115);
constexpr double disabledOpacity = 0.4;
constexpr int smallestTarget = 32;
constexpr int focusSize = 36;

QPixmap dimmed(QPixmap image) {
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillRect(QRect(QPoint(), image.deviceIndependentSize().toSize()), dimming);
    return image;
}

}  // namespace

ImageButton::ImageButton(QWidget* parent)
    : QAbstractButton(parent), normalTitle_(palette::ink), highlightedTitle_(palette::ink) {
    setFocusPolicy(Qt::TabFocus);
}

void ImageButton::setImage(const QString& resourceName) {
    image_ = resourceName;
    update();
}

void ImageButton::setBackgroundImage(const QString& normal, const QString& highlighted) {
    normalBackground_ = normal;
    highlightedBackground_ = highlighted;
    update();
}

void ImageButton::setTitleColor(const QColor& normal, const QColor& highlighted) {
    normalTitle_ = normal;
    highlightedTitle_ = highlighted;
    update();
}

void ImageButton::setHighlighted(bool highlighted) {
    highlighted_ = highlighted;
    update();
}

QSize ImageButton::sizeHint() const {
    return Images::size(image_.isEmpty() ? normalBackground_ : image_).expandedTo({smallestTarget, smallestTarget});
}

void ImageButton::mouseReleaseEvent(QMouseEvent* event) {
    const QPointer<ImageButton> alive(this);
    QAbstractButton::mouseReleaseEvent(event);
    if (alive) setHighlighted(false);
}

void ImageButton::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn) {
        QAbstractButton::keyPressEvent(event);
    } else if (!event->isAutoRepeat()) {
        click();
    }
}

// The button may be larger than its visible bar, so the frame is drawn around the image.
QRectF ImageButton::focusFrame() const {
    if (image_.isEmpty()) return rect();
    QRectF frame(0, 0, focusSize, focusSize);
    frame.moveCenter(QRectF(rect()).center());
    return frame.intersected(rect());
}

void ImageButton::paintEvent(QPaintEvent*) {
    const bool highlighted = highlighted_ || isDown();
    const bool hasHighlightedLook = highlighted && !highlightedBackground_.isEmpty();
    const bool dims = highlighted && adjustsImageWhenHighlighted_ && !hasHighlightedLook;
    const auto look = [this, dims](const QString& name) {
        const QPixmap image = Images::named(name, devicePixelRatioF());
        return dims && !image.isNull() ? dimmed(image) : image;
    };
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (!isEnabled()) painter.setOpacity(disabledOpacity);
    const QString& background = hasHighlightedLook ? highlightedBackground_ : normalBackground_;
    if (!background.isEmpty()) painter.drawPixmap(rect(), look(background));
    if (!image_.isEmpty()) {
        QRect place(QPoint(), Images::size(image_));
        place.moveCenter(rect().center());
        painter.drawPixmap(place, look(image_));
    }
    painter.setPen(highlighted ? highlightedTitle_ : normalTitle_);
    painter.drawText(rect(), Qt::AlignCenter, text());
    if (!Focus::isSeen(this)) return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette::accentInk, 1.5));
    painter.drawRoundedRect(focusFrame().adjusted(1, 1, -1, -1), 6, 6);
}

}  // namespace platform
