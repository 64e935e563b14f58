#include "app/VxmAppDelegate.h"

#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include "app/RouteTable.h"
#include "platform/system/Device.h"
#include "platform/ui/accessibility/Accessibility.h"
#include "platform/ui/navigation/NavigationController.h"
#include "screens/apps/VxmMainViewController.h"

namespace app {

namespace {

constexpr int widestPhone = 480;
constexpr QSize smallestWindow{320, 100};  // small enough for a phone in landscape with its keyboard shown

// A portrait screen of at most 480 points is taken for a phone's: the window fills it and has no frame.
void showOnScreen(QWidget& window, QSize designSize) {
    const QRect available = window.screen()->availableGeometry();
    const bool isPhone = available.width() <= widestPhone && available.width() < available.height();
    window.setWindowFlag(Qt::FramelessWindowHint, isPhone);
    window.winId();
    window.windowHandle()->setMinimumSize(smallestWindow.boundedTo(available.size()));
    if (isPhone) {
        // Without a window manager a request to maximize has no effect; a window manager respects panels of its own.
        window.setGeometry(available);
        window.showMaximized();
    } else {
        window.resize(designSize.boundedTo(available.size()));
        window.show();
    }
}

}  // namespace

VxmAppDelegate::VxmAppDelegate(const platform::Device& device)
    : device_(device), store_(device.root, *device.notifyCenter) {}

// Hides the window before its children are destroyed: a field that loses the focus on its own would commit its text.
VxmAppDelegate::~VxmAppDelegate() {
    if (window_) window_->hide();
}

void VxmAppDelegate::didFinishLaunching() {
    platform::installAccessibility();
    window_ = std::make_unique<QWidget>();
    window_->setWindowTitle(QStringLiteral("Vexmor"));
    auto* layout = new QVBoxLayout(window_.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSizeConstraint(QLayout::SetNoConstraint);

    chrome_.emplace(views::isFontInstalled(QStringLiteral("HelveticaNeue-CondensedBold")), device_.model,
                    device_.screen);
    writeWarning_.emplace(store_.path(store::File::appRules).parent_path(), device_);
    showOnScreen(*window_, chrome_->windowSize());

    routes_ = std::make_unique<RouteTable>(device_, *chrome_, store_, iconThreads_);
    navigation_ = new platform::NavigationController(routes_->makeMainScreen());
    layout->addWidget(navigation_);
}

void VxmAppDelegate::bringToFront(const QByteArray& activationToken) {
    window_->setWindowState(window_->windowState() & ~Qt::WindowMinimized);
    window_->raise();
    // A request to an X server is as old as the last event that Qt has seen, and without effect when something else has
    // been used since. Setting a title has an event as answer, even when nothing changes.
    window_->windowHandle()->setTitle(window_->windowTitle());
    QGuiApplication::sync();
    // Qt takes a Wayland compositor's token from the environment.
    if (!activationToken.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", activationToken);
    window_->activateWindow();
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

void VxmAppDelegate::applicationWillTerminate() {
    store_.terminate();
}

}  // namespace app
