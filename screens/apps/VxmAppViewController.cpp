#include "screens/apps/VxmAppViewController.h"

#include "platform/ui/controls/Switch.h"
#include "platform/ui/table/TableView.h"
#include "screens/apps/AppRoutes.h"
#include "store/ConfigurationStore.h"
#include "store/Schema.h"
#include "views/Palette.h"
#include "views/VxmNavBarView.h"
#include "views/VxmRuleCell.h"

namespace screens {

namespace {

constexpr int bandHeight = 6;
constexpr std::array rowsInSection{3, 1, 2};
constexpr int rulesSection = 2;
constexpr int denyRow = 1;
constexpr QRect enabledSwitchFrame{236, 4, 52, 32};  // even, so that the switch's middle is at 262, 20

store::AppRuleRecord readRecord(const store::ConfigurationStore& store, const QString& bundleIdentifier) {
    const auto rules = store.read(store::File::appRules);
    return rules ? store::AppRuleRecord::of(*rules, bundleIdentifier.toStdString()) : store::AppRuleRecord();
}

}  // namespace

VxmAppViewController::VxmAppViewController(const views::Chrome& chrome, store::ConfigurationStore& store,
                                           AppRoutes& routes, const QString& bundleIdentifier,
                                           const QString& displayName)
    : VxmTableScreen(chrome, bandHeight),
      store_(store),
      routes_(routes),
      bundleID_(bundleIdentifier),
      displayName_(displayName) {}

void VxmAppViewController::loadView() {
    auto* bar = new views::VxmNavBarView({0, 0, 320, 40}, *this, true, false, false);
    bar->setTitleString(displayName_);

    enabledSwitch_ = new platform::Switch;
    enabledSwitch_->setAccessibleName(tr("Firewall enabled for %1").arg(displayName_));
    enabledSwitch_->setOnTintColor(views::palette::accent);
    connect(enabledSwitch_, &platform::Switch::valueChanged, this,
            [this](platform::Switch* sender) { setVxmEnabledSwitchChanged(sender->isOn()); });
    bar->addControl(enabledSwitch_, enabledSwitchFrame);

    buildView(bar, makeTable());
    // The screen slides in showing what it will show; its first appearance makes sure of it.
    show(readRecord(store_, bundleID_));
}

void VxmAppViewController::viewDidAppear(bool animated) {
    VxmTableScreen::viewDidAppear(animated);
    if (once_) return;
    once_ = true;
    const bool isRead = changeRecord(store::writers::appSwitch, [this](store::AppRuleRecord& record) {
        show(record);
        record.setStillUseRules(state(stillSwitch).on);
    });
    if (!isRead) show({});
}

void VxmAppViewController::show(const store::AppRuleRecord& record) {
    const store::BlanketMode mode = record.blanketMode();
    const bool isBlanket = mode != store::BlanketMode::neither;
    enabledSwitch_->setOn(record.enabled(), false);
    setSwitch(allowSwitch, mode == store::BlanketMode::allowAll, mode != store::BlanketMode::denyAll, false);
    setSwitch(denySwitch, mode == store::BlanketMode::denyAll, mode != store::BlanketMode::allowAll, false);
    setSwitch(stillSwitch, isBlanket && record.stillUseRules(), isBlanket, false);
    setSwitch(wiFiSwitch, record.blockSpecificWiFi(), true, false);
}

// --- The table

int VxmAppViewController::numberOfSectionsInTableView(platform::TableView&) {
    return int(rowsInSection.size());
}

int VxmAppViewController::numberOfRowsInSection(platform::TableView&, int section) {
    return rowsInSection.at(std::size_t(section));
}

bool VxmAppViewController::canEditRowAtIndexPath(platform::TableView&, platform::IndexPath) {
    return false;
}

platform::TableViewCell* VxmAppViewController::cellForRowAtIndexPath(platform::TableView& table,
                                                                     platform::IndexPath indexPath) {
    const QString reuseIdentifier = QStringLiteral("RCell");
    auto* cell = static_cast<views::VxmRuleCell*>(table.dequeueReusableCell(reuseIdentifier));
    if (!cell) cell = new views::VxmRuleCell(chrome(), reuseIdentifier);

    const auto fill = [&](const QString& title, const std::optional<QString>& underText) {
        cell->setTitleLabelText(title);
        cell->setUnderTextLabelText(underText);
    };
    const auto fillSwitchRow = [&](const QString& title, const std::optional<QString>& underText, SwitchName name) {
        fill(title, underText);
        platform::Switch* control = makeSwitch(name);
        control->setAccessibleName(title);
        cell->setAccessory(platform::TableViewCell::Accessory::none);
        cell->setAccessoryView(control);
    };
    const auto fillListRow = [&](const QString& title, const QString& underText) {
        fill(title, underText);
        cell->setAccessoryView(nullptr);
        cell->setAccessory(platform::TableViewCell::Accessory::disclosureIndicator);
    };

    if (indexPath == platform::IndexPath{0, 0}) {
        fillSwitchRow(QStringLiteral("Allow All Connections"), std::nullopt, allowSwitch);
    } else if (indexPath == platform::IndexPath{0, 1}) {
        fillSwitchRow(QStringLiteral("Deny All Connections"), std::nullopt, denySwitch);
    } else if (indexPath == platform::IndexPath{0, 2}) {
        fillSwitchRow(QStringLiteral("Still Apply Detailed Rules"), QStringLiteral("Applies all rules set below"),
                      stillSwitch);
    } else if (indexPath == platform::IndexPath{1, 0}) {
        fillSwitchRow(QStringLiteral("Block If NOT On WiFi"), QStringLiteral("This will save mobile data."),
                      wiFiSwitch);
    } else if (indexPath == platform::IndexPath{rulesSection, 0}) {
        fillListRow(QStringLiteral("Always Allow Rules"), QStringLiteral("Connections which are allowed."));
    } else {
        fillListRow(QStringLiteral("Always Deny Rules"), QStringLiteral("Connections which are being blocked."));
    }
    return cell;
}

void VxmAppViewController::didSelectRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) {
    table.deselectRow(indexPath, false);
    if (indexPath.section == rulesSection) {
        routes_.openAppRules(*this, indexPath.row == denyRow, bundleID_, displayName_);
    }
}

// --- The switches

platform::Switch* VxmAppViewController::makeSwitch(SwitchName name) {
    SwitchState& shown = state(name);
    shown.control = new platform::Switch;
    shown.control->setOnTintColor(views::palette::accent);
    shown.control->setOn(shown.on, false);
    shown.control->setEnabled(shown.enabled);
    connect(shown.control, &platform::Switch::valueChanged, this,
            [this, name](platform::Switch* sender) { valueChanged(name, sender->isOn()); });
    return shown.control;
}

void VxmAppViewController::setSwitch(SwitchName name, bool on, bool enabled, bool animated) {
    SwitchState& shown = state(name);
    shown.on = on;
    shown.enabled = enabled;
    if (!shown.control) return;
    shown.control->setOn(on, animated);
    shown.control->setEnabled(enabled);
}

void VxmAppViewController::valueChanged(SwitchName name, bool on) {
    state(name).on = on;
    switch (name) {
        case allowSwitch:
            return blanketSwitchChanged(allowSwitch, denySwitch, on);
        case denySwitch:
            return blanketSwitchChanged(denySwitch, allowSwitch, on);
        case stillSwitch:
            return stillApplyDetailedRulesSwitchChanged(on);
        case wiFiSwitch:
            return blockIfNotOnWiFiSwitchChanged(on);
        case switchCount:
            break;
    }
}

void VxmAppViewController::setVxmEnabledSwitchChanged(bool on) {
    changeRecord(on ? store::writers::appEnabled : store::writers::appDisabled,
                 [on](store::AppRuleRecord& record) { record.setEnabled(on); });
}

void VxmAppViewController::blanketSwitchChanged(SwitchName sender, SwitchName other, bool on) {
    if (on) {
        setSwitch(other, false, false, true);
        setSwitch(stillSwitch, state(stillSwitch).on, true, true);
    } else {
        setSwitch(other, state(other).on, true, true);
        if (!state(other).on) setSwitch(stillSwitch, false, false, true);
    }
    const auto modeOfSender = sender == allowSwitch ? store::BlanketMode::allowAll : store::BlanketMode::denyAll;
    changeRecord(store::writers::appSwitch, [&](store::AppRuleRecord& record) {
        record.setBlanketMode(on ? modeOfSender : store::BlanketMode::neither);
        record.setStillUseRules(state(stillSwitch).on);
    });
}

void VxmAppViewController::stillApplyDetailedRulesSwitchChanged(bool on) {
    changeRecord(store::writers::appSwitch, [on](store::AppRuleRecord& record) { record.setStillUseRules(on); });
}

void VxmAppViewController::blockIfNotOnWiFiSwitchChanged(bool on) {
    changeRecord(store::writers::appSwitch, [on](store::AppRuleRecord& record) { record.setBlockSpecificWiFi(on); });
}

template <typename Change>
bool VxmAppViewController::changeRecord(const store::Writer& writer, Change change) {
    const std::string identifier = bundleID_.toStdString();
    return store_.change(writer, [&](store::Dictionary& rules) {
        auto record = store::AppRuleRecord::of(rules, identifier);
        change(record);
        record.storeIn(rules, identifier);
    });
}

}  // namespace screens
