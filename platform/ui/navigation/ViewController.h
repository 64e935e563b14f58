#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <memory>

class QWidget;

namespace platform {

class NavigationController;

// One screen. Creates its view on first use and is notified when it appears and disappears. Owned by the
// NavigationController that it was pushed onto, or by the screen that presented it. Main thread only.
class ViewController : public QObject {
    Q_OBJECT
public:
    ViewController();
    ~ViewController() override;

    // The screen's view; the first call runs loadView() and viewDidLoad(). Owned by the view controller.
    QWidget* view();
    bool isViewLoaded() const;

    const QString& title() const { return title_; }
    void setTitle(const QString& title) { title_ = title; }

    // The stack that holds this screen, or nullptr; a presented screen is on no stack.
    NavigationController* navigationController() const;

    // Shows a screen over the whole window, sliding up from below. This screen owns it and destroys it after the
    // animation of its dismissal. The viewWill... and viewDid... functions run as for push and pop. No effect unless
    // this screen is the visible one.
    void presentViewController(std::unique_ptr<ViewController> controller, bool animated);
    // On a presented screen, dismisses it; on a presenting one, dismisses the screen that it presents.
    void dismissViewController(bool animated);
    ViewController* presentedViewController() const;
    ViewController* presentingViewController() const;

protected:
    // Builds the view: calls setView() once. The default makes an empty widget.
    virtual void loadView();
    virtual void viewDidLoad() {}
    virtual void viewWillAppear(bool animated);
    virtual void viewDidAppear(bool animated);
    virtual void viewWillDisappear(bool animated);

    void setView(QWidget* view);

private:
    friend class NavigationController;
    struct Private;
    std::unique_ptr<Private> d_;
    QString title_;
};

}  // namespace platform
