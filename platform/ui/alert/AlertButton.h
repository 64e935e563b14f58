#pragma once

#include <QPushButton>

namespace platform {

// A button of an alert: flat, with hairlines to its neighbours. The alert paints its background.
class AlertButton : public QPushButton {
public:
    // The style of the title: normal, recommended, destructive.
    enum class Weight { plain, accent, destructive };

    AlertButton(const QString& title, QWidget* parent);

    void setWeight(Weight weight);
    Weight weight() const { return weight_; }

    // Draws a hairline at the left as well as at the top.
    void setStandsBesideAnother(bool beside) { beside_ = beside; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Weight weight_ = Weight::plain;
    bool beside_ = false;
};

}  // namespace platform
