#pragma once

#include <QImage>
#include <QWidget>

namespace views {

// An icon of 29 by 29 points: an image, or an image resource by name. It is aligned to device pixels, which may be half
// points; as widget geometry is in whole points, the widget may be one point larger than the icon.
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
    QRectF iconRect(const QPainter& painter) const;

    QPointF offset_;  // position of the icon in the widget: 0 or 0.5 points
    QImage image_;
    QString imageName_;
};

}  // namespace views
