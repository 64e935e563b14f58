#pragma once

#include "screens/apps/AppListScreen.h"

namespace screens {

class AppRoutes;

// The root of the navigation: the two global rule lists and every app that is under the firewall. Creates the app
// rules file on first use, prunes the records of apps that are no longer installed, warns when the firewall is off.
class VxmMainViewController : public AppListScreen {
    Q_OBJECT
public:
    // All of these outlive the screen.
    VxmMainViewController(const views::Chrome& chrome, store::ConfigurationStore& store,
                          platform::ApplicationList& catalog, catalog::IconThreads& iconThreads, AppRoutes& routes);

    // Rebuilds the list from the app rules file and the catalog.
    void loadApps();
    void removeKeys(const std::vector<std::string>& keys);

    // Puts an app under the firewall with a new, empty record. The list shows it at the next appearance.
    void addBundleIdentifier(const QString& bundleIdentifier);

    void add(platform::ImageButton& sender) override;
    void presentSettings(platform::ImageButton& sender) override;

    int numberOfRowsInSection(platform::TableView& table, int section) override;
    platform::TableViewCell* cellForRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    bool canEditRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    void commitEditingStyle(platform::TableView& table, platform::EditingStyle style,
                            platform::IndexPath indexPath) override;
    void didSelectRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;

protected:
    void loadView() override;
    void viewDidLoad() override;
    void viewDidAppear(bool animated) override;

    int appSection() const override { return 1; }
    void prepareCell(views::VxmAppCell& cell) const override;

private:
    bool isGlobalSection(const platform::TableView& table, platform::IndexPath indexPath) const;
    platform::TableViewCell* globalCell(platform::TableView& table, bool isDeny);
    std::vector<std::string> uninstalledAmong(std::vector<std::string> keys) const;
    void warnWhenDisabled();

    AppRoutes& routes_;
};

}  // namespace screens
