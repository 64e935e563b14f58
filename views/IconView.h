#pragma once

#include <QImage>
#include <QWidget>

namespace views {

// An image, or an image resource by name. It fills the widget, at first 29 by 29 points, unless it is centred on a
// point: then it has that size and is aligned to device pixels, which may be half points. As widget geometry is in
// whole points, the widget may be one point larger than such an icon.
class IconView : public QWidget {
public:
    explicit IconView(QWidget* parent);

    // In the parent's coordinates, in points.
    void setCentre(QPointF centre);

    void setImage(const QImage& image);
    void setImageNamed(const QString& resourceName);

    // Null while a resource or nothing is shown.
    const QImage& image() const { return image_; }
    const QString& imageName() const { return imageName_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRectF imageRect(const QPainter& painter) const;

    bool isCentred_ = false;
    QPointF offset_;  // position of a centred icon in the widget: 0 or 0.5 points
    QImage image_;
    QString imageName_;
};

}  // namespace views
