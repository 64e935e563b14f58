#include "screens/settings/VxmSettingsViewController.h"

#include "platform/ui/table/TableView.h"
#include "screens/settings/Reachability.h"
#include "screens/settings/SettingsRoutes.h"
#include "store/ConfigurationStore.h"
#include "store/Schema.h"
#include "views/VxmNavBarView.h"

namespace screens {

namespace {

constexpr int deleteAlertTag = 666;
constexpr int yesButton = 1;

}  // namespace

VxmSettingsViewController::VxmSettingsViewController(const views::Chrome& chrome, store::ConfigurationStore& store,
                                                     SettingsRoutes& routes, platform::Network& network)
    : VxmSwitchScreen(chrome), store_(store), routes_(routes), network_(network) {}

void VxmSettingsViewController::loadView() {
    auto* bar = new views::VxmNavBarView({0, 0, 320, 40}, *this, true, false, false);
    bar->setTitleString(QStringLiteral("Settings"));
    takeGlobalSwitches(store_.read(store::File::globalRules).value_or(store::Dictionary()));
    setSections(describe());
    buildView(bar, makeTable());
}

std::vector<VxmSettingsViewController::Section> VxmSettingsViewController::describe() {
    namespace keys = store::keys;
    return {
        {switchRow(u"Enabled", u"Completely disable/enable Vxm.", masterSwitch())},
        {screenRow(u"Documentation", u"Browse Vexmor documentation.", [this] { openDocumentation(); })},
        {switchRow(u"Block If NOT On WiFi", u"In apps hooked by Vexmor.", globalSwitch(keys::blockNonWiFi))},
        {switchRow(u"Allow All Sess. Respects Global", u"Global Rules will be respected",
                   globalSwitch(keys::respectGlobal))},
        {switchRow(u"Log", u"Tap cell to view the log.", globalSwitch(keys::log), [this] { routes_.openLog(*this); })},
        {switchRow(u"Deny Tab In Front", u"For the popup.", globalSwitch(keys::denyTabFront))},
        {screenRow(u"Import/Export Settings", u"For all settings and rules.",
                   [this] { routes_.openImportExport(*this); })},
        {commandRow(u"Delete All Rules and Settings", u"Will ask for confirmation.", [this] { askForDeletion(); })},
    };
}

// --- The switches

VxmSettingsViewController::Toggle VxmSettingsViewController::masterSwitch() {
    return {[this] { return !store_.isDisabled(); }, [this](bool on) { store_.setDisabled(!on); }};
}

VxmSettingsViewController::Toggle VxmSettingsViewController::globalSwitch(std::string_view key) {
    return {[this, key] { return globalSwitches_.at(key); }, [this, key](bool on) { globalSwitchChanged(key, on); }};
}

void VxmSettingsViewController::takeGlobalSwitches(const store::Dictionary& globalRules) {
    for (const auto key : store::keys::globalSwitches) globalSwitches_[key] = store::boolValue(globalRules, key);
}

// The file is read again, and others may have turned other switches in it: all of them are taken from it.
void VxmSettingsViewController::globalSwitchChanged(std::string_view key, bool on) {
    const auto change = [&](store::Dictionary& globalRules) {
        globalRules.set(key, store::Value(on));
        takeGlobalSwitches(globalRules);
    };
    store_.change(store::writers::globalSwitch, change, [&] {
        if (key == store::keys::log && on) showPleaseRead();
    });
}

void VxmSettingsViewController::showPleaseRead() {
    auto* alert = new platform::AlertView(
        QStringLiteral("Please Read"),
        QStringLiteral("Logging will need additional resources and will fill the memory. Disable logging if you don't "
                       "need it."),
        nullptr, QStringLiteral("OK"));
    alert->show(table());
}

// --- The commands

void VxmSettingsViewController::openDocumentation() {
    const auto reachability = Reachability::reachabilityForInternetConnection(network_);
    if (reachability && reachability->currentReachabilityStatus() != NetworkStatus::NotReachable) {
        return routes_.openDocumentation(*this);
    }
    auto* alert = new platform::AlertView(
        QStringLiteral("No Internet Connection"),
        QStringLiteral("You require an internet connection via WiFi or cellular network for additional Information."),
        nullptr, QStringLiteral("Ok"));
    alert->show(table());
}

void VxmSettingsViewController::askForDeletion() {
    auto* alert = new platform::AlertView(QStringLiteral("Delete all Rules"),
                                          QStringLiteral("Do you really want to delete all rules?"), this,
                                          QStringLiteral("Cancel"), {QStringLiteral("Yes")});
    alert->tag = deleteAlertTag;
    alert->setDestructive(yesButton);
    alert->show(table());
}

void VxmSettingsViewController::didDismissWithButtonIndex(platform::AlertView& alert, int buttonIndex) {
    if (alert.tag == deleteAlertTag && buttonIndex == yesButton) deleteAllRulesAndSettings();
}

void VxmSettingsViewController::deleteAllRulesAndSettings() {
    store_.deleteAllRulesAndSettings([this] {
        takeGlobalSwitches({});
        table()->reloadData();
    });
}

}  // namespace screens
