#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <memory>

class QWidget;

namespace platform {

class NavigationController;

// One screen: builds its view when it is first needed and hears of its appearing and disappearing. Owned by the
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

    // The stack this screen is on, or nullptr. A presented screen is on none.
    NavigationController* navigationController() const;

    // Shows a screen over the whole window, sliding up from below. The presented screen belongs to this one and is
    // destroyed after its dismissal's animation. This screen's viewWillDisappear() and, after the dismissal, its
    // viewWillAppear() and viewDidAppear() run as for a push and a pop. Does nothing unless this screen is the visible
    // one.
    void presentViewController(std::unique_ptr<ViewController> controller, bool animated);
    // On a presented screen, dismisses that screen; on a presenting one, the screen it presents.
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
