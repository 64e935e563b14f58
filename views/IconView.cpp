#include "views/IconView.h"

#include <QPainter>

#include "platform/ui/Images.h"

namespace views {

namespace {

constexpr int iconSize = 29;

}  // namespace

IconView::IconView(QWidget* parent) : QWidget(parent) {
    resize(iconSize, iconSize);
    setAttribute(Qt::WA_TransparentForMouseEvents);
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
        painter.drawImage(rect(), image_);
    } else if (!imageName_.isEmpty()) {
        painter.drawPixmap(rect(), platform::Images::named(imageName_, devicePixelRatioF()));
    }
}

}  // namespace views
