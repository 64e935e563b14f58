#include "screens/apps/VxmMainViewController.h"

#include <QTimer>
#include <algorithm>

#include "catalog/VxmAppList.h"
#include "platform/ui/alert/AlertView.h"
#include "platform/ui/table/TableView.h"
#include "screens/apps/AppRoutes.h"
#include "store/ConfigurationStore.h"
#include "store/Schema.h"
#include "views/IconView.h"
#include "views/VxmAppCell.h"
#include "views/VxmNavBarView.h"

namespace screens {

namespace {

constexpr int globalSection = 0;
constexpr int denyRow = 1;
constexpr auto secondLoadDelay = std::chrono::milliseconds(300);
constexpr auto frameDelay = std::chrono::milliseconds(30);  // within which what has changed is painted

QStringList keysOf(const store::Dictionary& dictionary) {
    QStringList keys;
    keys.reserve(qsizetype(dictionary.size()));
    for (const auto& [key, value] : dictionary) keys.append(QString::fromStdString(key));
    return keys;
}

void removeLast(std::vector<store::AppInfo>& apps, const std::string& bundleIdentifier) {
    const auto last = std::find_if(apps.rbegin(), apps.rend(),
                                   [&](const store::AppInfo& app) { return app.bundleIdentifier == bundleIdentifier; });
    if (last != apps.rend()) apps.erase(std::next(last).base());
}

}  // namespace

VxmMainViewController::VxmMainViewController(const views::Chrome& chrome, store::ConfigurationStore& store,
                                             platform::ApplicationList& catalog, catalog::IconThreads& iconThreads,
                                             AppRoutes& routes)
    : AppListScreen(chrome, store, catalog, iconThreads), routes_(routes) {}

void VxmMainViewController::loadView() {
    auto* bar = new views::VxmNavBarView({0, 0, 320, 40}, *this, false, true, false);
    bar->setTitleString(QStringLiteral("Vexmor"));
    bar->showSettingsButton();
    buildAppListView(bar);
    warnWhenDisabled();
}

void VxmMainViewController::warnWhenDisabled() {
    if (!store().isDisabled()) return;
    auto* alert = new platform::AlertView(
        QStringLiteral("Attention!"),
        QStringLiteral("Firewall is disabled. You can activate it in the settings or via the toogle for SBSettings."),
        nullptr, QStringLiteral("OK"));
    alert->show(table());
}

void VxmMainViewController::viewDidLoad() {
    AppListScreen::viewDidLoad();
    store().createAppRulesFileIfMissing();
}

void VxmMainViewController::viewDidAppear(bool animated) {
    AppListScreen::viewDidAppear(animated);
    QTimer::singleShot(secondLoadDelay, this, &VxmMainViewController::loadApps);
    loadApps();
}

void VxmMainViewController::loadApps() {
    std::vector<store::AppInfo> apps;
    std::vector<std::string> keysToRemove;
    if (const auto rules = store().read(store::File::appRules)) {
        const auto installed = catalog::VxmAppList::applicationsWithBundleIdentifiers(catalog(), keysOf(*rules));
        for (const auto& [key, record] : *rules) {
            const auto name = installed.constFind(QString::fromStdString(key));
            if (name != installed.constEnd()) {
                apps.push_back({key, name->toStdString()});
            } else if (key == store::keys::gameCenterDaemon) {
                apps.push_back({key, std::string(gameCenterDaemonName)});
            } else {
                keysToRemove.push_back(key);
            }
        }
    }
    setApps(std::move(apps));
    // Who waits to see the list does not wait for the disk as well.
    if (!keysToRemove.empty())
        QTimer::singleShot(frameDelay, this,
                           [this, keys = std::move(keysToRemove)] { removeKeys(uninstalledAmong(keys)); });
}

// By now: whoever has been installed since the list was made keeps its record.
std::vector<std::string> VxmMainViewController::uninstalledAmong(std::vector<std::string> keys) const {
    QStringList identifiers;
    for (const std::string& key : keys) identifiers.append(QString::fromStdString(key));
    const auto installed = catalog::VxmAppList::applicationsWithBundleIdentifiers(catalog(), identifiers);
    std::erase_if(keys, [&](const std::string& key) { return installed.contains(QString::fromStdString(key)); });
    return keys;
}

void VxmMainViewController::removeKeys(const std::vector<std::string>& keys) {
    store().change(store::writers::pruneApps, [&](store::Dictionary& rules) {
        for (const std::string& key : keys) rules.remove(key);
    });
}

void VxmMainViewController::addBundleIdentifier(const QString& bundleIdentifier) {
    store().change(store::writers::addApp, [&](store::Dictionary& rules) {
        store::AppRuleRecord::fresh().storeIn(rules, bundleIdentifier.toStdString());
    });
}

void VxmMainViewController::add(platform::ImageButton&) {
    routes_.openAppChooser(*this);
}

void VxmMainViewController::presentSettings(platform::ImageButton&) {
    routes_.openSettings(*this);
}

bool VxmMainViewController::isGlobalSection(const platform::TableView& table, platform::IndexPath indexPath) const {
    return &table == this->table() && indexPath.section == globalSection;
}

int VxmMainViewController::numberOfRowsInSection(platform::TableView& table, int section) {
    return isGlobalSection(table, {section, 0}) ? 2 : AppListScreen::numberOfRowsInSection(table, section);
}

platform::TableViewCell* VxmMainViewController::cellForRowAtIndexPath(platform::TableView& table,
                                                                      platform::IndexPath indexPath) {
    return isGlobalSection(table, indexPath) ? globalCell(table, indexPath.row == denyRow)
                                             : AppListScreen::cellForRowAtIndexPath(table, indexPath);
}

platform::TableViewCell* VxmMainViewController::globalCell(platform::TableView& table, bool isDeny) {
    views::VxmAppCell* cell = dequeueAppCell(table);
    cell->setTitleLabelText(isDeny ? QStringLiteral("Global Deny") : QStringLiteral("Global Allow"));
    cell->appImageView()->setImageNamed(isDeny ? QStringLiteral("GlobalDeny") : QStringLiteral("GlobalAllow"));
    cell->setIndentationLevel(0);
    cell->setUnderTextLabelText(QStringLiteral("Applied to all Apps"));
    return cell;
}

void VxmMainViewController::prepareCell(views::VxmAppCell& cell) const {
    cell.setAccessory(platform::TableViewCell::Accessory::disclosureIndicator);
}

bool VxmMainViewController::canEditRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) {
    return !isGlobalSection(table, indexPath);
}

void VxmMainViewController::commitEditingStyle(platform::TableView& table, platform::EditingStyle style,
                                               platform::IndexPath indexPath) {
    if (style != platform::EditingStyle::remove) return;
    const std::string bundleIdentifier = appAt(table, indexPath).bundleIdentifier;
    store().change(store::writers::deleteApp, [&](store::Dictionary& rules) { rules.remove(bundleIdentifier); });
    removeLast(appsIn(*this->table()), bundleIdentifier);
    removeLast(appsIn(*searchController()->searchResultsTableView()), bundleIdentifier);
    table.deleteRow(indexPath, platform::RowAnimation::left);
    if (&table != this->table()) this->table()->reloadData();
}

void VxmMainViewController::didSelectRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) {
    table.deselectRow(indexPath, false);
    if (isGlobalSection(table, indexPath)) {
        routes_.openGlobalRules(*this, indexPath.row == denyRow);
        return;
    }
    const store::AppInfo& app = appAt(table, indexPath);
    routes_.openApp(*this, QString::fromStdString(app.bundleIdentifier), QString::fromStdString(app.displayName));
}

}  // namespace screens
