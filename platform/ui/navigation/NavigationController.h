#pragma once

#include <QWidget>
#include <memory>

namespace platform {

class ViewController;

// A stack of screens in one window; the top one is visible. A pushed screen slides in from the right in 0.35 s, a
// popped one slides out to the right and is destroyed at the end of the animation; a presented one slides in from
// below. Input is blocked during a transition. Escape, the Back key and Alt+Left go back, unless an open alert, search
// or edit consumes them; the root is never popped. Screens extend down to the on-screen keyboard. A request during a
// transition completes that transition first; none may be made from viewWillAppear() or viewWillDisappear(). Main
// thread only.
class NavigationController : public QWidget {
    Q_OBJECT
public:
    explicit NavigationController(std::unique_ptr<ViewController> root, QWidget* parent = nullptr);
    ~NavigationController() override;

    void pushViewController(std::unique_ptr<ViewController> controller, bool animated);
    // Pops the top screen; no effect on the root.
    void popViewController(bool animated);

    ViewController* topViewController() const;
    // The top screen, or the last one presented over it.
    ViewController* visibleViewController() const;
    int count() const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    friend class ViewController;
    struct Private;

    void present(ViewController& presenter, std::unique_ptr<ViewController> controller, bool animated);
    void dismiss(ViewController& presenter, bool animated);

    std::unique_ptr<Private> d_;
};

}  // namespace platform
