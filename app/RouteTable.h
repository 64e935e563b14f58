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

// Creates and opens all screens: the only code that depends on every screen.
class RouteTable : public screens::AppRoutes, public screens::RuleRoutes, public screens::SettingsRoutes {
public:
    // The arguments outlive the table and every screen that it creates.
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
