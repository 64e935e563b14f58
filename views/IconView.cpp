#include "views/IconView.h"

#include <QPainter>
#include <cmath>

#include "platform/ui/drawing/Images.h"

namespace views {

namespace {

constexpr int iconSize = 29;

}  // namespace

IconView::IconView(QWidget* parent) : QWidget(parent) {
    resize(iconSize, iconSize);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void IconView::setCentre(QPointF centre) {
    QRectF icon(0, 0, iconSize, iconSize);
    icon.moveCenter(centre);
    const QRect around = icon.toAlignedRect();
    offset_ = icon.topLeft() - around.topLeft();
    isCentred_ = true;
    setGeometry(around);
}

void IconView::setImage(const QImage& image) {
    image_ = image;
    imageName_.clear();
    update();
}

void IconView::setImageNamed(const QString& resourceName) {
    image_ = {};
    imageName_ = resourceName;
    update();
}

void IconView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (!image_.isNull()) {
        painter.drawImage(imageRect(painter), image_);
    } else if (!imageName_.isEmpty()) {
        const QPixmap image = platform::Images::named(imageName_, devicePixelRatioF());
        painter.drawPixmap(imageRect(painter), image, image.rect());
    }
}

// Aligns the image to whole pixels; a fraction would blur it.
QRectF IconView::imageRect(const QPainter& painter) const {
    const double pixelsPerPoint = painter.deviceTransform().m11();
    const auto snapped = [pixelsPerPoint](double points) {
        return std::floor(points * pixelsPerPoint) / pixelsPerPoint;
    };
    const QSizeF extent = isCentred_ ? QSizeF(iconSize, iconSize) : QSizeF(size());
    return {QPointF(snapped(offset_.x()), snapped(offset_.y())), extent};
}

}  // namespace views
