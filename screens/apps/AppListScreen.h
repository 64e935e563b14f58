#pragma once

#include <QImage>
#include <string_view>
#include <vector>

#include "catalog/IconQueue.h"
#include "platform/ui/search/SearchDisplayController.h"
#include "store/sorting/Ordering.h"
#include "views/VxmTableScreen.h"

namespace platform {
class ApplicationList;
}

namespace store {
class ConfigurationStore;
}

namespace views {
class VxmAppCell;
class VxmNavBarView;
}  // namespace views

namespace screens {

// The one daemon that is in no catalog: shown under this name, never pruned.
inline constexpr std::string_view gameCenterDaemonName = "GameCenterDaemon";

// What the main screen and the add-app chooser share: a table of apps in name order with their icons, which load in
// the background, and a search by name. The two differ in where the apps come from, in which section they stand and in
// what a tap on one does.
class AppListScreen : public views::VxmTableScreen, public platform::SearchDisplayDelegate {
    Q_OBJECT
public:
    // All of these outlive the screen.
    AppListScreen(const views::Chrome& chrome, store::ConfigurationStore& store, platform::ApplicationList& catalog,
                  catalog::IconThreads& iconThreads);
    ~AppListScreen() override;

    const std::vector<store::AppInfo>& appsArray() const { return appsArray_; }
    const std::vector<store::AppInfo>& filteredApps() const { return filteredApps_; }
    platform::SearchDisplayController* searchController() const { return searchCont_; }

    void filterContentForSearchText(const QString& text, int scope);

    int numberOfSectionsInTableView(platform::TableView& table) override;
    int numberOfRowsInSection(platform::TableView& table, int section) override;
    platform::TableViewCell* cellForRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    void willDisplayCell(platform::TableView& table, platform::TableViewCell& cell,
                         platform::IndexPath indexPath) override;

    bool shouldReloadTableForSearchString(platform::SearchDisplayController& controller, const QString& text) override;
    bool shouldReloadTableForSearchScope(platform::SearchDisplayController& controller, int scope) override;

protected:
    // The section of the main table in which the apps stand.
    virtual int appSection() const { return 0; }
    // A new cell's accessory and the like.
    virtual void prepareCell(views::VxmAppCell& cell) const;

    // Builds bar, table and search into the screen's view.
    void buildAppListView(views::VxmNavBarView* bar);

    store::ConfigurationStore& store() const { return store_; }
    platform::ApplicationList& catalog() const { return catalog_; }

    // The list that a table shows, and one of its rows.
    std::vector<store::AppInfo>& appsIn(const platform::TableView& table);
    const store::AppInfo& appAt(const platform::TableView& table, platform::IndexPath indexPath);

    // Sorts by name, takes the apps over and reloads the main table.
    void setApps(std::vector<store::AppInfo> apps);

    views::VxmAppCell* dequeueAppCell(platform::TableView& table);

private:
    void showIcon(views::VxmAppCell& cell, const QString& identifier);
    void iconLoaded(const QString& identifier);
    void replacePlaceholder(views::VxmAppCell& cell, const QString& identifier);

    store::ConfigurationStore& store_;
    platform::ApplicationList& catalog_;
    store::NameOrder nameOrder_;
    std::vector<store::AppInfo> appsArray_;
    std::vector<store::AppInfo> filteredApps_;
    QImage defaultImage_;
    platform::SearchDisplayController* searchCont_ = nullptr;
    catalog::IconQueue iconsToLoad_;
};

}  // namespace screens
