#pragma once

#include <QPushButton>

namespace platform {

// One of an alert's buttons: flat, parted from its neighbours by hairlines. The alert paints what is behind it.
class AlertButton : public QPushButton {
public:
    // How the title looks: as one of several, as the one that matters, as one that destroys.
    enum class Weight { plain, accent, destructive };

    AlertButton(const QString& title, QWidget* parent);

    void setWeight(Weight weight);
    Weight weight() const { return weight_; }

    // A hairline at the left as well as at the top.
    void setStandsBesideAnother(bool beside) { beside_ = beside; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Weight weight_ = Weight::plain;
    bool beside_ = false;
};

}  // namespace platform
