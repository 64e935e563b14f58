#include "screens/apps/VxmAppChooserControllerViewController.h"

#include "catalog/VxmAppList.h"
#include "platform/ui/table/TableView.h"
#include "screens/apps/VxmMainViewController.h"
#include "store/ConfigurationStore.h"
#include "store/Schema.h"
#include "views/VxmNavBarView.h"

namespace screens {

namespace {

// The identifiers that are not offered: what has a record, and two programs that are the system's own. Without a
// file nothing is excluded.
QStringList excludedIdentifiers(const std::optional<store::Dictionary>& rules) {
    QStringList excluded;
    if (!rules) return excluded;
    for (const auto& [key, value] : *rules) excluded.append(QString::fromStdString(key));
    excluded << QStringLiteral("com.apple.springboard") << QStringLiteral("com.saurik.Cydia");
    return excluded;
}

}  // namespace

void VxmAppChooserControllerViewController::loadView() {
    auto* bar = new views::VxmAppChooserNavBarView({0, 0, 320, 40}, *this);
    bar->setTitleString(QStringLiteral("Add App"));
    buildAppListView(bar);
}

void VxmAppChooserControllerViewController::viewDidLoad() {
    AppListScreen::viewDidLoad();
    const QStringList excluded = excludedIdentifiers(store().read(store::File::appRules));
    const auto installed = catalog::VxmAppList::applicationsWithoutBundleIdentifiers(catalog(), excluded);
    std::vector<store::AppInfo> apps;
    apps.reserve(std::size_t(installed.size()) + 1);
    for (auto app = installed.cbegin(); app != installed.cend(); ++app) {
        apps.push_back({app.key().toStdString(), app.value().toStdString()});
    }
    const std::string daemon(store::keys::gameCenterDaemon);
    if (!excluded.contains(QString::fromStdString(daemon))) {
        apps.push_back({daemon, std::string(gameCenterDaemonName)});
    }
    setApps(std::move(apps));
}

bool VxmAppChooserControllerViewController::canEditRowAtIndexPath(platform::TableView&, platform::IndexPath) {
    return false;
}

void VxmAppChooserControllerViewController::didSelectRowAtIndexPath(platform::TableView& table,
                                                                    platform::IndexPath indexPath) {
    table.deselectRow(indexPath, false);
    mainViewController_->addBundleIdentifier(QString::fromStdString(appAt(table, indexPath).bundleIdentifier));
    dismissViewController(true);
}

void VxmAppChooserControllerViewController::done(platform::ImageButton&) {
    dismissViewController(true);
}

}  // namespace screens
