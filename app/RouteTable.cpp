#include "app/RouteTable.h"

#include "platform/system/Device.h"
#include "platform/ui/navigation/NavigationController.h"
#include "screens/apps/VxmAppChooserControllerViewController.h"
#include "screens/apps/VxmAppViewController.h"
#include "screens/apps/VxmMainViewController.h"
#include "screens/rules/VxmAppRulesViewController.h"
#include "screens/rules/VxmGlobalViewController.h"
#include "screens/settings/VxmGlobalImportViewController.h"
#include "screens/settings/VxmImportExportViewController.h"
#include "screens/settings/VxmLogViewController.h"
#include "screens/settings/VxmSettingsViewController.h"
#include "screens/settings/VxmWebViewController.h"

namespace app {

namespace {

// Only from the visible screen, so that a double tap opens one screen.
void push(platform::ViewController& from, std::unique_ptr<platform::ViewController> screen) {
    auto* navigation = from.navigationController();
    if (navigation && navigation->visibleViewController() == &from)
        navigation->pushViewController(std::move(screen), true);
}

}  // namespace

RouteTable::RouteTable(const platform::Device& device, const views::Chrome& chrome, store::ConfigurationStore& store,
                       catalog::IconThreads& iconThreads)
    : device_(device), chrome_(chrome), store_(store), iconThreads_(iconThreads) {}

std::unique_ptr<platform::ViewController> RouteTable::makeMainScreen() {
    return std::make_unique<screens::VxmMainViewController>(chrome_, store_, *device_.applicationList, iconThreads_,
                                                            *this);
}

void RouteTable::openGlobalRules(platform::ViewController& from, bool isDeny) {
    push(from, std::make_unique<screens::VxmGlobalViewController>(chrome_, store_, *this, isDeny));
}

void RouteTable::openApp(platform::ViewController& from, const QString& bundleIdentifier, const QString& displayName) {
    push(from, std::make_unique<screens::VxmAppViewController>(chrome_, store_, *this, bundleIdentifier, displayName));
}

void RouteTable::openAppChooser(screens::VxmMainViewController& from) {
    auto chooser = std::make_unique<screens::VxmAppChooserControllerViewController>(
        chrome_, store_, *device_.applicationList, iconThreads_);
    chooser->setMainViewController(&from);
    from.presentViewController(std::move(chooser), true);
}

void RouteTable::openSettings(platform::ViewController& from) {
    push(from, std::make_unique<screens::VxmSettingsViewController>(chrome_, store_, *this, *device_.network));
}

void RouteTable::openAppRules(platform::ViewController& from, bool isDeny, const QString& bundleIdentifier,
                              const QString& displayName) {
    push(from,
         std::make_unique<screens::VxmAppRulesViewController>(chrome_, store_, isDeny, bundleIdentifier, displayName));
}

void RouteTable::openHostListImport(platform::ViewController& from, bool isDeny) {
    push(from, std::make_unique<screens::VxmGlobalImportViewController>(chrome_, store_, isDeny));
}

void RouteTable::openDocumentation(platform::ViewController& from) {
    const QString host =
        device_.documentationHost.isEmpty() ? QStringLiteral(VEXMOR_DOCUMENTATION_HOST) : device_.documentationHost;
    push(from, std::make_unique<screens::VxmWebViewController>(chrome_, host, QStringLiteral(VEXMOR_SUPPORT_ADDRESS),
                                                               device_.openURL));
}

void RouteTable::openLog(platform::ViewController& from) {
    push(from, std::make_unique<screens::VxmLogViewController>(chrome_, store_));
}

void RouteTable::openImportExport(platform::ViewController& from) {
    push(from, std::make_unique<screens::VxmImportExportViewController>(chrome_, store_));
}

}  // namespace app
