#pragma once

#include <string_view>

#include "store/Schema.h"
#include "views/VxmSwitchScreen.h"

namespace platform {
class Switch;
}

namespace store {
class ConfigurationStore;
struct Writer;
}  // namespace store

namespace screens {

class AppRoutes;

// The firewall settings of one app: whether the firewall acts on it, the two blanket modes, whether the app's own rules
// still apply under one of them, whether it is blocked off Wi-Fi; and the way to its rule lists. Every change is
// written into the app's record at once.
class VxmAppViewController : public views::VxmSwitchScreen {
    Q_OBJECT
public:
    // `chrome`, `store` and `routes` outlive the screen.
    VxmAppViewController(const views::Chrome& chrome, store::ConfigurationStore& store, AppRoutes& routes,
                         const QString& bundleIdentifier, const QString& displayName);

    const QString& bundleID() const { return bundleID_; }
    const QString& displayName() const { return displayName_; }
    platform::Switch* enabledSwitch() const { return enabledSwitch_; }

protected:
    void loadView() override;
    void viewDidAppear(bool animated) override;

private:
    std::vector<Section> describe();
    Row listRow(const char16_t* title, const char16_t* underText, bool isDeny);
    Toggle blanketSwitch(store::BlanketMode mode);
    Toggle stillSwitch();
    // The switch of a Boolean key of the record.
    Toggle recordSwitch(std::string_view key);

    void show(const store::AppRuleRecord& record);
    void setVxmEnabledSwitchChanged(bool on);
    void blanketSwitchChanged(store::BlanketMode mode, bool on);

    // Makes a change to what the switches show and to the record in the file.
    template <typename Change>
    void change(Change change);
    // Reads the record afresh, changes it, writes it back. Returns whether there was a file to read.
    template <typename Change>
    bool changeRecord(const store::Writer& writer, Change change);

    store::ConfigurationStore& store_;
    AppRoutes& routes_;
    QString bundleID_;
    QString displayName_;
    platform::Switch* enabledSwitch_ = nullptr;
    // What the switches show: a record with their keys and no others.
    store::AppRuleRecord shown_;
    bool once_ = false;
};

}  // namespace screens
