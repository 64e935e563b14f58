#include "platform/ui/navigation/NavigationController.h"

#include <QKeyEvent>
#include <QPointer>
#include <vector>

#include "platform/ui/input/Focus.h"
#include "platform/ui/input/HeldPress.h"
#include "platform/ui/input/InputShield.h"
#include "platform/ui/input/OnScreenKeyboard.h"
#include "platform/ui/navigation/ScreenTransition.h"
#include "platform/ui/navigation/ViewController.h"
#include "platform/ui/navigation/ViewControllerPrivate.h"

namespace platform {

struct NavigationController::Private {
    using Way = ScreenTransition::Way;

    explicit Private(NavigationController* controller) : stage(new QWidget(controller)), q(controller) {}

    void adopt(std::unique_ptr<ViewController> controller) {
        controller->d_->navigation = q;
        stack.push_back(std::move(controller));
    }

    void finishTransition() {
        if (transition) transition->finish();
    }

    void place(QWidget* view) const {
        if (view->parentWidget() != stage) view->setParent(stage);
        view->setGeometry(stage->rect());
    }

    // The stage excludes the part that an on-screen keyboard covers.
    void placeStage() const {
        stage->setGeometry(q->rect().adjusted(0, 0, 0, -OnScreenKeyboard::coveredHeight(q)));
        if (transition) {
            transition->follow();
        } else if (appeared) {
            place(q->visibleViewController()->view());
        }
    }

    void giveFocusTo(ViewController& screen) const {
        if (!InputShield::shownIn(q, InputShield::Until::answered).isEmpty()) return;
        QWidget* before = screen.d_->focus;
        if (before && before->isVisible()) {
            before->setFocus(Qt::OtherFocusReason);
        } else {
            Focus::giveTo(screen.view());
        }
    }

    // Ends editing in a screen before it leaves, while the screen can still handle the typed text. The focus widget is
    // remembered for its return, unless it is a text field.
    static void releaseFocus(ViewController& screen) {
        QWidget* held = Focus::heldWithin(screen.view());
        screen.d_->focus = held && !Focus::isTextField(held) ? held : nullptr;
        Focus::endEditing(screen.view());
    }

    void firstAppearance() {
        appeared = true;
        ViewController& top = *stack.back();
        place(top.view());
        top.viewWillAppear(false);
        top.view()->show();
        giveFocusTo(top);
        top.viewDidAppear(false);
    }

    // Runs the transition between two screens. Screens in `going` are destroyed at its end.
    void exchange(ViewController& from, ViewController& to, Way way, bool animated) {
        releaseFocus(from);
        place(to.view());
        from.viewWillDisappear(animated);
        to.viewWillAppear(animated);
        transition = new ScreenTransition(stage, from.view(), to.view(), way);
        giveFocusTo(to);
        transition->run(animated, [this, &to, animated] {
            transition = nullptr;
            destroyGoneScreens();
            to.viewDidAppear(animated);
        });
    }

    // Deferred: the pop may have been requested by a widget of the screen itself.
    void destroyGoneScreens() {
        for (auto& screen : going) gone.push_back(std::move(screen));
        going.clear();
        QMetaObject::invokeMethod(
            q, [this] { gone.clear(); }, Qt::QueuedConnection);
    }

    QWidget* stage;
    NavigationController* q;
    Focus::Watch focusWatch;
    HeldPress::Watch pressWatch;
    std::vector<std::unique_ptr<ViewController>> stack;
    std::vector<std::unique_ptr<ViewController>> going;
    std::vector<std::unique_ptr<ViewController>> gone;
    QPointer<ScreenTransition> transition;
    bool appeared = false;
};

NavigationController::NavigationController(std::unique_ptr<ViewController> root, QWidget* parent)
    : QWidget(parent), d_(std::make_unique<Private>(this)) {
    d_->adopt(std::move(root));
    OnScreenKeyboard::followFocus(this);
    OnScreenKeyboard::whenMoved(this, [this] { d_->placeStage(); });
}

NavigationController::~NavigationController() {
    delete d_->transition;
    while (!d_->stack.empty()) d_->stack.pop_back();
}

void NavigationController::pushViewController(std::unique_ptr<ViewController> controller, bool animated) {
    d_->finishTransition();
    ViewController& from = *visibleViewController();
    ViewController& to = *controller;
    d_->adopt(std::move(controller));
    if (d_->appeared) d_->exchange(from, to, Private::Way::push, animated);
}

void NavigationController::popViewController(bool animated) {
    d_->finishTransition();
    if (d_->stack.size() < 2) return;
    ViewController& from = *visibleViewController();
    d_->going.push_back(std::move(d_->stack.back()));
    d_->stack.pop_back();
    d_->going.back()->d_->navigation = nullptr;
    if (d_->appeared) {
        d_->exchange(from, *d_->stack.back(), Private::Way::pop, animated);
    } else {
        d_->destroyGoneScreens();
    }
}

void NavigationController::present(ViewController& presenter, std::unique_ptr<ViewController> controller,
                                   bool animated) {
    d_->finishTransition();
    if (visibleViewController() != &presenter) return;
    ViewController& to = *controller;
    to.d_->presenting = &presenter;
    presenter.d_->presented = std::move(controller);
    if (d_->appeared) d_->exchange(presenter, to, Private::Way::present, animated);
}

void NavigationController::dismiss(ViewController& presenter, bool animated) {
    d_->finishTransition();
    ViewController& from = *visibleViewController();
    d_->going.push_back(std::move(presenter.d_->presented));
    d_->going.back()->d_->presenting = nullptr;
    if (d_->appeared) {
        d_->exchange(from, presenter, Private::Way::dismiss, animated);
    } else {
        d_->destroyGoneScreens();
    }
}

ViewController* NavigationController::topViewController() const {
    return d_->stack.back().get();
}

ViewController* NavigationController::visibleViewController() const {
    ViewController* visible = topViewController();
    while (visible->presentedViewController()) visible = visible->presentedViewController();
    return visible;
}

int NavigationController::count() const {
    return static_cast<int>(d_->stack.size());
}

void NavigationController::resizeEvent(QResizeEvent*) {
    d_->placeStage();
}

void NavigationController::showEvent(QShowEvent*) {
    if (!d_->appeared) d_->firstAppearance();
}

bool NavigationController::focusNextPrevChild(bool next) {
    return Focus::moveOn(*window(), next);
}

void NavigationController::keyPressEvent(QKeyEvent* event) {
    const bool altLeft = event->key() == Qt::Key_Left && event->modifiers().testFlag(Qt::AltModifier);
    if (event->key() != Qt::Key_Escape && event->key() != Qt::Key_Back && !altLeft) {
        QWidget::keyPressEvent(event);
    } else if (visibleViewController()->presentingViewController()) {
        visibleViewController()->dismissViewController(true);
    } else {
        popViewController(true);
    }
}

}  // namespace platform
