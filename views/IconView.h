#pragma once

#include <QImage>
#include <QWidget>

namespace views {

// An icon of 29 by 29 points: an image, or an image resource by name.
class IconView : public QWidget {
public:
    explicit IconView(QWidget* parent);

    void setImage(const QImage& image);
    void setImageNamed(const QString& resourceName);

    // Null while a resource, or nothing, is shown.
    const QImage& image() const { return image_; }
    const QString& imageName() const { return imageName_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage image_;
    QString imageName_;
};

}  // namespace views
