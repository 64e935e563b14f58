#include "platform/ui/navigation/ViewController.h"

#include <QWidget>

#include "platform/ui/navigation/NavigationController.h"
#include "platform/ui/navigation/ViewControllerPrivate.h"

namespace platform {

ViewController::ViewController() : d_(std::make_unique<Private>()) {}

ViewController::~ViewController() {
    d_->presented.reset();
    delete d_->view;
}

QWidget* ViewController::view() {
    if (!d_->view) {
        Q_ASSERT(!d_->loading);
        d_->loading = true;
        loadView();
        d_->loading = false;
        Q_ASSERT(d_->view);
        viewDidLoad();
    }
    return d_->view;
}

bool ViewController::isViewLoaded() const {
    return d_->view != nullptr;
}

void ViewController::loadView() {
    setView(new QWidget);
}

void ViewController::setView(QWidget* view) {
    d_->view = view;
}

void ViewController::viewWillAppear(bool) {}

void ViewController::viewDidAppear(bool) {}

void ViewController::viewWillDisappear(bool) {}

NavigationController* ViewController::navigationController() const {
    return d_->navigation;
}

ViewController* ViewController::presentedViewController() const {
    return d_->presented.get();
}

ViewController* ViewController::presentingViewController() const {
    return d_->presenting;
}

void ViewController::presentViewController(std::unique_ptr<ViewController> controller, bool animated) {
    const ViewController* onStack = this;
    while (onStack->d_->presenting) onStack = onStack->d_->presenting;
    Q_ASSERT(onStack->d_->navigation);
    onStack->d_->navigation->present(*this, std::move(controller), animated);
}

void ViewController::dismissViewController(bool animated) {
    ViewController* presenter = d_->presenting ? d_->presenting : this;
    const ViewController* onStack = presenter;
    while (onStack->d_->presenting) onStack = onStack->d_->presenting;
    if (presenter->d_->presented && onStack->d_->navigation) onStack->d_->navigation->dismiss(*presenter, animated);
}

}  // namespace platform
