#pragma once

#include <QWidget>

namespace platform {

// Lies over other widgets and keeps every touch, click and turn of the wheel from them.
class InputShield : public QWidget {
public:
    using QWidget::QWidget;

protected:
    bool event(QEvent* event) override;
};

}  // namespace platform
