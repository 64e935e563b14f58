#pragma once

#include <QImage>
#include <QWidget>

namespace views {

// An icon of 29 by 29 points: an image, or an image resource by name. Its edges lie on whole pixels of the screen,
// which are half points where the screen has them; the widget around it, which has none, may be a point larger.
class IconView : public QWidget {
public:
    explicit IconView(QWidget* parent);

    // In the parent's points.
    void setCentre(QPointF centre);

    void setImage(const QImage& image);
    void setImageNamed(const QString& resourceName);

    // Null while a resource, or nothing, is shown.
    const QImage& image() const { return image_; }
    const QString& imageName() const { return imageName_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRectF iconRect(const QPainter& painter) const;

    QPointF offset_;  // of the icon in the widget: 0 or half a point
    QImage image_;
    QString imageName_;
};

}  // namespace views
