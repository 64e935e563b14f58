#pragma once

#include <QPointer>
#include <array>

#include "views/VxmTableScreen.h"

namespace platform {
class Switch;
}

namespace store {
class AppRuleRecord;
class ConfigurationStore;
struct Writer;
}  // namespace store

namespace screens {

class AppRoutes;

// The firewall settings of one app: whether the firewall acts on it, the two blanket modes, whether the app's own rules
// still apply under one of them, whether it is blocked off Wi-Fi; and the way to its rule lists. Every change is
// written into the app's record at once.
class VxmAppViewController : public views::VxmTableScreen {
    Q_OBJECT
public:
    // `chrome`, `store` and `routes` outlive the screen.
    VxmAppViewController(const views::Chrome& chrome, store::ConfigurationStore& store, AppRoutes& routes,
                         const QString& bundleIdentifier, const QString& displayName);

    const QString& bundleID() const { return bundleID_; }
    const QString& displayName() const { return displayName_; }
    platform::Switch* enabledSwitch() const { return enabledSwitch_; }

    int numberOfSectionsInTableView(platform::TableView& table) override;
    int numberOfRowsInSection(platform::TableView& table, int section) override;
    platform::TableViewCell* cellForRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    bool canEditRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    void didSelectRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;

protected:
    void loadView() override;
    void viewDidAppear(bool animated) override;

private:
    enum SwitchName { allowSwitch, denySwitch, stillSwitch, wiFiSwitch, switchCount };

    // What a switch of the table shows. The table makes a new switch each time it builds the row.
    struct SwitchState {
        bool on = false;
        bool enabled = true;
        QPointer<platform::Switch> control;
    };

    SwitchState& state(SwitchName name) { return switches_.at(std::size_t(name)); }
    void setSwitch(SwitchName name, bool on, bool enabled, bool animated);
    platform::Switch* makeSwitch(SwitchName name);
    void valueChanged(SwitchName name, bool on);

    void show(const store::AppRuleRecord& record);
    void setVxmEnabledSwitchChanged(bool on);
    void blanketSwitchChanged(SwitchName sender, SwitchName other, bool on);
    void stillApplyDetailedRulesSwitchChanged(bool on);
    void blockIfNotOnWiFiSwitchChanged(bool on);

    // Reads the record afresh, changes it, writes it back. Returns whether there was a file to read.
    template <typename Change>
    bool changeRecord(const store::Writer& writer, Change change);

    store::ConfigurationStore& store_;
    AppRoutes& routes_;
    QString bundleID_;
    QString displayName_;
    platform::Switch* enabledSwitch_ = nullptr;
    std::array<SwitchState, switchCount> switches_;
    bool once_ = false;
};

}  // namespace screens
