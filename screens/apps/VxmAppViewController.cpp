#include "screens/apps/VxmAppViewController.h"

#include "platform/ui/controls/Switch.h"
#include "screens/apps/AppRoutes.h"
#include "store/ConfigurationStore.h"
#include "views/Palette.h"
#include "views/VxmNavBarView.h"

namespace screens {

namespace {

constexpr QRect enabledSwitchFrame{236, 4, 52, 32};  // even, so that the switch's middle is at 262, 20

store::AppRuleRecord readRecord(const store::ConfigurationStore& store, const QString& bundleIdentifier) {
    const auto rules = store.read(store::File::appRules);
    return rules ? store::AppRuleRecord::of(*rules, bundleIdentifier.toStdString()) : store::AppRuleRecord();
}

}  // namespace

VxmAppViewController::VxmAppViewController(const views::Chrome& chrome, store::ConfigurationStore& store,
                                           AppRoutes& routes, const QString& bundleIdentifier,
                                           const QString& displayName)
    : VxmSwitchScreen(chrome), store_(store), routes_(routes), bundleID_(bundleIdentifier), displayName_(displayName) {}

void VxmAppViewController::loadView() {
    auto* bar = new views::VxmNavBarView({0, 0, 320, 40}, *this, true, false, false);
    bar->setTitleString(displayName_);

    enabledSwitch_ = new platform::Switch;
    enabledSwitch_->setAccessibleName(tr("Firewall enabled for %1").arg(displayName_));
    enabledSwitch_->setOnTintColor(views::palette::accent);
    connect(enabledSwitch_, &platform::Switch::valueChanged, this,
            [this](platform::Switch* sender) { setVxmEnabledSwitchChanged(sender->isOn()); });
    bar->addControl(enabledSwitch_, enabledSwitchFrame);

    setSections(describe());
    buildView(bar, makeTable());
    // The screen slides in showing what it will show; its first appearance makes sure of it.
    show(readRecord(store_, bundleID_));
}

void VxmAppViewController::viewDidAppear(bool animated) {
    VxmSwitchScreen::viewDidAppear(animated);
    if (once_) return;
    once_ = true;
    const bool isRead = changeRecord(store::writers::appSwitch, [this](store::AppRuleRecord& record) {
        show(record);
        record.setFlag(store::keys::stillUseRules, shown_.flag(store::keys::stillUseRules));
    });
    if (!isRead) show({});
}

std::vector<VxmAppViewController::Section> VxmAppViewController::describe() {
    using store::BlanketMode;
    namespace keys = store::keys;
    return {
        {switchRow(u"Allow All Connections", nullptr, blanketSwitch(BlanketMode::allowAll)),
         switchRow(u"Deny All Connections", nullptr, blanketSwitch(BlanketMode::denyAll)),
         switchRow(u"Still Apply Detailed Rules", u"Applies all rules set below", stillSwitch())},
        {switchRow(u"Block If NOT On WiFi", u"This will save mobile data.", recordSwitch(keys::blockSpecificWiFi))},
        {listRow(u"Always Allow Rules", u"Connections which are allowed.", false),
         listRow(u"Always Deny Rules", u"Connections which are being blocked.", true)},
    };
}

VxmAppViewController::Row VxmAppViewController::listRow(const char16_t* title, const char16_t* underText, bool isDeny) {
    Row row =
        screenRow(title, underText, [this, isDeny] { routes_.openAppRules(*this, isDeny, bundleID_, displayName_); });
    row.selectionStyle = platform::TableViewCell::SelectionStyle::none;
    return row;
}

// --- The switches

VxmAppViewController::Toggle VxmAppViewController::blanketSwitch(store::BlanketMode mode) {
    return {[this, mode] { return shown_.blanketMode() == mode; },
            [this, mode](bool on) { blanketSwitchChanged(mode, on); },
            [this, mode] {
                const store::BlanketMode shown = shown_.blanketMode();
                return shown == mode || shown == store::BlanketMode::neither;
            }};
}

VxmAppViewController::Toggle VxmAppViewController::stillSwitch() {
    Toggle toggle = recordSwitch(store::keys::stillUseRules);
    toggle.isEnabled = [this] { return shown_.blanketMode() != store::BlanketMode::neither; };
    return toggle;
}

VxmAppViewController::Toggle VxmAppViewController::recordSwitch(std::string_view key) {
    return {[this, key] { return shown_.flag(key); },
            [this, key](bool on) { change([&](store::AppRuleRecord& record) { record.setFlag(key, on); }); }};
}

void VxmAppViewController::show(const store::AppRuleRecord& record) {
    const bool isBlanket = record.blanketMode() != store::BlanketMode::neither;
    shown_.setBlanketMode(record.blanketMode());
    for (const auto key : store::keys::appSwitches) shown_.setFlag(key, record.flag(key));
    shown_.setFlag(store::keys::stillUseRules, isBlanket && record.flag(store::keys::stillUseRules));
    enabledSwitch_->setOn(record.enabled(), false);
    showSwitches(false);
}

void VxmAppViewController::setVxmEnabledSwitchChanged(bool on) {
    changeRecord(on ? store::writers::appEnabled : store::writers::appDisabled,
                 [on](store::AppRuleRecord& record) { record.setEnabled(on); });
}

void VxmAppViewController::blanketSwitchChanged(store::BlanketMode mode, bool on) {
    const bool stillUseRules = on && shown_.flag(store::keys::stillUseRules);
    change([&](store::AppRuleRecord& record) {
        record.setBlanketMode(on ? mode : store::BlanketMode::neither);
        record.setFlag(store::keys::stillUseRules, stillUseRules);
    });
}

template <typename Change>
void VxmAppViewController::change(Change change) {
    change(shown_);
    changeRecord(store::writers::appSwitch, change);
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
