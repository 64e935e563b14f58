#include "app/VxmAppDelegate.h"

#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

#include "app/RouteTable.h"
#include "platform/system/Device.h"
#include "platform/ui/NavigationController.h"
#include "screens/apps/VxmMainViewController.h"

namespace app {

namespace {

// A portrait screen that is hardly wider than the design is a phone's: the app fills it, as everything there does.
constexpr int widestPhone = 420;

void showOnScreen(QWidget& window, QSize designSize) {
    const QRect available = window.screen()->availableGeometry();
    const bool isPhone = available.width() <= widestPhone && available.width() < available.height();
    if (isPhone) {
        // By its size, not by asking to be maximized: on a bare display nobody would answer.
        window.setGeometry(available);
    } else {
        window.resize(designSize.boundedTo(available.size()));
    }
    window.show();
}

}  // namespace

VxmAppDelegate::VxmAppDelegate(const platform::Device& device)
    : device_(device), store_(device.root, *device.notifyCenter) {}

VxmAppDelegate::~VxmAppDelegate() = default;

void VxmAppDelegate::didFinishLaunching() {
    window_ = std::make_unique<QWidget>();
    window_->setWindowTitle(QStringLiteral("Vexmor"));
    auto* layout = new QVBoxLayout(window_.get());
    layout->setContentsMargins(0, 0, 0, 0);

    chrome_.emplace(views::isFontInstalled(QStringLiteral("HelveticaNeue-CondensedBold")), device_.model,
                    device_.screen);
    showOnScreen(*window_, chrome_->windowSize());

    routes_ = std::make_unique<RouteTable>(device_, *chrome_, store_);
    navigation_ = new platform::NavigationController(routes_->makeMainScreen());
    layout->addWidget(navigation_);
}

void VxmAppDelegate::applicationWillTerminate() {
    store_.terminate();
}

}  // namespace app
