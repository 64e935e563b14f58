#pragma once

#include <functional>
#include <memory>

#include "platform/ui/input/InputShield.h"

namespace platform {

// Dims a whole window under an alert and keeps touches from what is below. Follows the window's size; fades and lets
// the alert on it grow as it comes. Owned by the window.
class AlertBackdrop : public InputShield {
    Q_OBJECT
public:
    // The panel, which becomes its child, is what stands out on it.
    AlertBackdrop(QWidget* window, QWidget* panel);
    ~AlertBackdrop() override;

    QWidget* panel() const { return panel_; }
    // Points from the top that no on-screen keyboard covers.
    int freeHeight() const;

    void comeIn();
    void goOut(std::function<void()> gone);

Q_SIGNALS:
    // The width may have changed as well.
    void freeHeightChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    class PopEffect;

    void fade(double from, double to, bool grows, std::function<void()> done);

    QWidget* panel_;
    double shade_ = 0;
    std::unique_ptr<QObject> motion_;  // destroying it ends the motion
};

}  // namespace platform
