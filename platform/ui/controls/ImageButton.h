#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QString>

namespace platform {

// A button that shows an image, centred at its natural size, with an optional title over it. clicked() is
// touch-up-inside. The image is dimmed while the button is pressed. Images are resource names ("AddButton"), painted at
// the screen's scale.
class ImageButton : public QAbstractButton {
    Q_OBJECT
public:
    explicit ImageButton(QWidget* parent = nullptr);

    void setImage(const QString& resourceName);
    const QString& image() const { return image_; }

    // Stretched over the whole button behind the title, one image for each state; "" for none.
    void setBackgroundImage(const QString& normal, const QString& highlighted);
    void setTitleColor(const QColor& normal, const QColor& highlighted);

    void setAdjustsImageWhenHighlighted(bool adjusts) { adjustsImageWhenHighlighted_ = adjusts; }

    // Draws the highlighted state without a press. The end of a press on the button resets it.
    void setHighlighted(bool highlighted);
    bool isHighlighted() const { return highlighted_; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QRectF focusFrame() const;

    QString image_;
    QString normalBackground_;
    QString highlightedBackground_;
    QColor normalTitle_;
    QColor highlightedTitle_;
    bool adjustsImageWhenHighlighted_ = true;
    bool highlighted_ = false;
};

}  // namespace platform
