#include "screens/settings/VxmSettingsViewController.h"

#include <array>

#include "platform/ui/controls/Switch.h"
#include "platform/ui/table/TableView.h"
#include "screens/settings/Reachability.h"
#include "screens/settings/SettingsRoutes.h"
#include "store/ConfigurationStore.h"
#include "store/Schema.h"
#include "views/Palette.h"
#include "views/VxmNavBarView.h"
#include "views/VxmRuleCell.h"

namespace screens {

namespace {

using Accessory = platform::TableViewCell::Accessory;
using SelectionStyle = platform::TableViewCell::SelectionStyle;

constexpr int bandHeight = 6;
constexpr int deleteAlertTag = 666;
constexpr int yesButton = 1;

// The rows below, in their order.
enum Section {
    enabledSection,
    documentationSection,
    blockNonWiFiSection,
    respectGlobalSection,
    logSection,
    denyTabFrontSection,
    importExportSection,
    deleteSection,
    sectionCount
};

enum class Control { none, disclosure, toggle };

struct Row {
    const char16_t* title;
    const char16_t* underText;
    Control control;
    SelectionStyle selectionStyle;
    std::string_view key = {};  // of the global switch that the row holds
};

constexpr std::array rows{
    Row{u"Enabled", u"Completely disable/enable Vxm.", Control::toggle, SelectionStyle::none},
    Row{u"Documentation", u"Browse Vexmor documentation.", Control::disclosure, SelectionStyle::gray},
    Row{u"Block If NOT On WiFi", u"In apps hooked by Vexmor.", Control::toggle, SelectionStyle::none,
        store::keys::blockNonWiFi},
    Row{u"Allow All Sess. Respects Global", u"Global Rules will be respected", Control::toggle, SelectionStyle::none,
        store::keys::respectGlobal},
    Row{u"Log", u"Tap cell to view the log.", Control::toggle, SelectionStyle::gray, store::keys::log},
    Row{u"Deny Tab In Front", u"For the popup.", Control::toggle, SelectionStyle::none, store::keys::denyTabFront},
    Row{u"Import/Export Settings", u"For all settings and rules.", Control::disclosure, SelectionStyle::gray},
    Row{u"Delete All Rules and Settings", u"Will ask for confirmation.", Control::none, SelectionStyle::none},
};

static_assert(rows.size() == sectionCount);

const Row& rowOf(int section) {
    return rows.at(std::size_t(section));
}

}  // namespace

VxmSettingsViewController::VxmSettingsViewController(const views::Chrome& chrome, store::ConfigurationStore& store,
                                                     SettingsRoutes& routes, platform::Network& network)
    : VxmTableScreen(chrome, bandHeight), store_(store), routes_(routes), network_(network) {}

void VxmSettingsViewController::loadView() {
    auto* bar = new views::VxmNavBarView({0, 0, 320, 40}, *this, true, false, false);
    bar->setTitleString(QStringLiteral("Settings"));
    buildView(bar, makeTable());
    takeGlobalSwitches(store_.read(store::File::globalRules).value_or(store::Dictionary()));
}

// --- The table

int VxmSettingsViewController::numberOfSectionsInTableView(platform::TableView&) {
    return int(rows.size());
}

int VxmSettingsViewController::numberOfRowsInSection(platform::TableView&, int) {
    return 1;
}

bool VxmSettingsViewController::canEditRowAtIndexPath(platform::TableView&, platform::IndexPath) {
    return false;
}

platform::TableViewCell* VxmSettingsViewController::cellForRowAtIndexPath(platform::TableView& table,
                                                                          platform::IndexPath indexPath) {
    const QString reuseIdentifier = QStringLiteral("Cell");
    auto* cell = static_cast<views::VxmRuleCell*>(table.dequeueReusableCell(reuseIdentifier));
    if (!cell) cell = new views::VxmRuleCell(chrome(), reuseIdentifier);
    const Row& row = rowOf(indexPath.section);
    cell->setTitleLabelText(QString::fromUtf16(row.title));
    cell->setUnderTextLabelText(QString::fromUtf16(row.underText));
    cell->setSelectionStyle(row.selectionStyle);
    cell->setAccessory(row.control == Control::disclosure ? Accessory::disclosureIndicator : Accessory::none);
    cell->setAccessoryView(row.control == Control::toggle ? makeSwitch(indexPath.section) : nullptr);
    return cell;
}

void VxmSettingsViewController::didSelectRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) {
    table.deselectRow(indexPath, false);
    switch (indexPath.section) {
        case documentationSection:
            return openDocumentation();
        case logSection:
            return routes_.openLog(*this);
        case importExportSection:
            return routes_.openImportExport(*this);
        case deleteSection:
            return askForDeletion();
        default:
            return;
    }
}

// --- The switches

platform::Switch* VxmSettingsViewController::makeSwitch(int section) {
    auto* made = new platform::Switch;
    made->setAccessibleName(QString::fromUtf16(rowOf(section).title));
    made->setOnTintColor(views::palette::accent);
    made->setOn(isOn(section), false);
    connect(made, &platform::Switch::valueChanged, this, [this, section](platform::Switch* sender) {
        if (section == enabledSection) {
            setVxmEnabledSwitchChanged(sender->isOn());
        } else {
            globalSwitchChanged(section, sender->isOn());
        }
        showSwitches();
    });
    return made;
}

bool VxmSettingsViewController::isOn(int section) const {
    return section == enabledSection ? !store_.isDisabled() : globalSwitches_.at(std::size_t(section));
}

// Who turns one switch reads the file again, in which others may have turned another.
void VxmSettingsViewController::showSwitches() {
    table()->forEachCell([this](platform::IndexPath indexPath, platform::TableViewCell& cell) {
        if (platform::Switch* shown = cell.accessorySwitch()) shown->setOn(isOn(indexPath.section), true);
    });
}

void VxmSettingsViewController::takeGlobalSwitches(const store::Dictionary& globalRules) {
    globalSwitches_.clear();
    for (const Row& row : rows) globalSwitches_.push_back(store::boolValue(globalRules, row.key));
}

void VxmSettingsViewController::setVxmEnabledSwitchChanged(bool on) {
    store_.setDisabled(!on);
}

void VxmSettingsViewController::globalSwitchChanged(int section, bool on) {
    const auto change = [&](store::Dictionary& globalRules) {
        globalRules.set(rowOf(section).key, store::Value(on));
        takeGlobalSwitches(globalRules);
    };
    store_.change(store::writers::globalSwitch, change, [&] {
        if (section == logSection && on) showPleaseRead();
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
