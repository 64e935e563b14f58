#pragma once

#include <QPointer>
#include <functional>

#include "platform/ui/input/InputShield.h"

namespace platform {

// Two screens changing places on a stage. Lies over the stage while it runs, keeps input from the screens below and
// shades the lower one. Owned by the stage; destroys itself once it has finished.
class ScreenTransition : public InputShield {
    Q_OBJECT
public:
    enum class Way { push, pop, present, dismiss };

    // Shows `coming` at the place where it sets out from; both are children of `stage`.
    ScreenTransition(QWidget* stage, QWidget* leaving, QWidget* coming, Way way);

    // `finished` runs once both are where they belong and `leaving` is hidden.
    void run(bool animated, std::function<void()> finished);
    // Ends the motion now.
    void finish();
    // The stage has another size.
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
