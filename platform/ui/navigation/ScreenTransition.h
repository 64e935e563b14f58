#pragma once

#include <QPointer>
#include <functional>

#include "platform/ui/input/InputShield.h"

namespace platform {

// The animation that replaces one screen by another on a stage (their parent widget). While it runs it covers the
// stage, blocks input and shades the lower screen. Owned by the stage; deletes itself at the end.
class ScreenTransition : public InputShield {
    Q_OBJECT
public:
    enum class Way { push, pop, present, dismiss };

    // Shows `coming` at its start position; both are children of `stage`.
    ScreenTransition(QWidget* stage, QWidget* leaving, QWidget* coming, Way way);

    // `finished` is called once both are at their final positions and `leaving` is hidden.
    void run(bool animated, std::function<void()> finished);
    // Completes the animation immediately.
    void finish();
    // Call when the stage has been resized.
    void follow();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool comingIsOnTop() const { return way_ == Way::push || way_ == Way::present; }
    void place(double progress);

    QPointer<QWidget> leaving_;
    QPointer<QWidget> coming_;
    Way way_;
    double progress_ = 0;
    std::function<void()> finished_;
};

}  // namespace platform
