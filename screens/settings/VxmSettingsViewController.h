#pragma once

#include <vector>

#include "platform/ui/alert/AlertView.h"
#include "views/VxmTableScreen.h"

namespace platform {
class Network;
class Switch;
}  // namespace platform

namespace store {
class ConfigurationStore;
class Dictionary;
}  // namespace store

namespace screens {

class SettingsRoutes;

// The settings that concern the firewall as a whole: the master switch, the four global switches, the ways to the
// documentation, the log and export/import, and the command that deletes everything. A switch takes effect at once:
// the file is written, then the engine is told.
class VxmSettingsViewController : public views::VxmTableScreen, public platform::AlertViewDelegate {
    Q_OBJECT
public:
    // All of these outlive the screen.
    VxmSettingsViewController(const views::Chrome& chrome, store::ConfigurationStore& store, SettingsRoutes& routes,
                              platform::Network& network);

    int numberOfSectionsInTableView(platform::TableView& table) override;
    int numberOfRowsInSection(platform::TableView& table, int section) override;
    platform::TableViewCell* cellForRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    bool canEditRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    void didSelectRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;

    void didDismissWithButtonIndex(platform::AlertView& alert, int buttonIndex) override;

protected:
    void loadView() override;

private:
    platform::Switch* makeSwitch(int section);
    bool isOn(int section) const;
    void showSwitches();
    void takeGlobalSwitches(const store::Dictionary& globalRules);

    void setVxmEnabledSwitchChanged(bool on);
    void globalSwitchChanged(int section, bool on);
    void showPleaseRead();
    void openDocumentation();
    void askForDeletion();
    void deleteAllRulesAndSettings();

    store::ConfigurationStore& store_;
    SettingsRoutes& routes_;
    platform::Network& network_;
    // What the global rules file said of the global switches when it was last read, by their position in the table.
    std::vector<bool> globalSwitches_;
};

}  // namespace screens
