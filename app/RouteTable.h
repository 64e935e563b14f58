#pragma once

#include <memory>

#include "screens/apps/AppRoutes.h"
#include "screens/rules/RuleRoutes.h"
#include "screens/settings/SettingsRoutes.h"

namespace catalog {
class IconThreads;
}

namespace platform {
struct Device;
}

namespace store {
class ConfigurationStore;
}

namespace views {
class Chrome;
}

namespace app {

// The ways between the screens, in one place: the only code that knows all of them.
class RouteTable : public screens::AppRoutes, public screens::RuleRoutes, public screens::SettingsRoutes {
public:
    // All of these outlive the table and every screen that it makes.
    RouteTable(const platform::Device& device, const views::Chrome& chrome, store::ConfigurationStore& store,
               catalog::IconThreads& iconThreads);

    std::unique_ptr<platform::ViewController> makeMainScreen();

    void openGlobalRules(platform::ViewController& from, bool isDeny) override;
    void openApp(platform::ViewController& from, const QString& bundleIdentifier, const QString& displayName) override;
    void openAppChooser(screens::VxmMainViewController& from) override;
    void openSettings(platform::ViewController& from) override;
    void openAppRules(platform::ViewController& from, bool isDeny, const QString& bundleIdentifier,
                      const QString& displayName) override;
    void openHostListImport(platform::ViewController& from, bool isDeny) override;
    void openDocumentation(platform::ViewController& from) override;
    void openLog(platform::ViewController& from) override;
    void openImportExport(platform::ViewController& from) override;

private:
    const platform::Device& device_;
    const views::Chrome& chrome_;
    store::ConfigurationStore& store_;
    catalog::IconThreads& iconThreads_;
};

}  // namespace app
