#pragma once

#include <QWidget>
#include <memory>

namespace platform {

class ViewController;

// A stack of screens in one window, the top one visible. A pushed screen comes from the right in 0.35 s, a popped one
// leaves to the right and is destroyed when its animation has ended; a presented one comes from below. Input is off
// while screens move. Escape, the Back key and Alt+Left go back (an open alert, search or edit takes them first); the
// root stays. The screens end where an on-screen keyboard begins. A request that comes while screens move ends that
// motion first; none may come from within a screen's viewWillAppear() or viewWillDisappear(). Main thread only.
class NavigationController : public QWidget {
    Q_OBJECT
public:
    explicit NavigationController(std::unique_ptr<ViewController> root, QWidget* parent = nullptr);
    ~NavigationController() override;

    void pushViewController(std::unique_ptr<ViewController> controller, bool animated);
    // Pops the top screen; does nothing when only the root is left.
    void popViewController(bool animated);

    ViewController* topViewController() const;
    // The screen the person sees: the top one or what is presented over it.
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
