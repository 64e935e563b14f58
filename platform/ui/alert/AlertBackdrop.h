#pragma once

#include <functional>
#include <memory>

#include "platform/ui/input/InputShield.h"

namespace platform {

// The dimmed background of an alert: covers the whole window, blocks input below and follows the window's size. Fades
// in and out; the panel grows as it appears. Owned by the window.
class AlertBackdrop : public InputShield {
    Q_OBJECT
public:
    // `panel` is the alert itself and becomes a child.
    AlertBackdrop(QWidget* window, QWidget* panel);
    ~AlertBackdrop() override;

    QWidget* panel() const { return panel_; }
    // Height above the on-screen keyboard, in points.
    int freeHeight() const;

    void comeIn();
    void goOut(std::function<void()> gone);

Q_SIGNALS:
    // freeHeight() or the width has changed.
    void freeHeightChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    class PopEffect;

    void fade(double from, double to, bool grows, std::function<void()> done);

    QWidget* panel_;
    double shade_ = 0;
    std::unique_ptr<QObject> motion_;  // owner of the animation: destroying it cancels it
};

}  // namespace platform
