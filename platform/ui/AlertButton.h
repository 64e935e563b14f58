#pragma once

#include <QPushButton>

namespace platform {

// One of an alert's buttons: flat, parted from its neighbours by hairlines. The alert paints what is behind it.
class AlertButton : public QPushButton {
public:
    enum class Weight { plain, accent };

    AlertButton(const QString& title, Weight weight, QWidget* parent);

    // A hairline at the left as well as at the top.
    void setStandsBesideAnother(bool beside) { beside_ = beside; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Weight weight_;
    bool beside_ = false;
};

}  // namespace platform
