#pragma once

#include <map>
#include <string_view>

#include "platform/ui/alert/AlertView.h"
#include "views/VxmSwitchScreen.h"

namespace platform {
class Network;
}

namespace store {
class ConfigurationStore;
class Dictionary;
}  // namespace store

namespace screens {

class SettingsRoutes;

// The settings that concern the firewall as a whole: the master switch, the four global switches, the ways to the
// documentation, the log and export/import, and the command that deletes everything. A switch takes effect at once:
// the file is written, then the engine is told.
class VxmSettingsViewController : public views::VxmSwitchScreen, public platform::AlertViewDelegate {
    Q_OBJECT
public:
    // All of these outlive the screen.
    VxmSettingsViewController(const views::Chrome& chrome, store::ConfigurationStore& store, SettingsRoutes& routes,
                              platform::Network& network);

    void didDismissWithButtonIndex(platform::AlertView& alert, int buttonIndex) override;

protected:
    void loadView() override;

private:
    std::vector<Section> describe();
    Toggle masterSwitch();
    // The switch of a key of the global rules file.
    Toggle globalSwitch(std::string_view key);
    void takeGlobalSwitches(const store::Dictionary& globalRules);
    void globalSwitchChanged(std::string_view key, bool on);

    void showPleaseRead();
    void openDocumentation();
    void askForDeletion();
    void deleteAllRulesAndSettings();

    store::ConfigurationStore& store_;
    SettingsRoutes& routes_;
    platform::Network& network_;
    // The global switches by their keys, as the global rules file had them when it was last read.
    std::map<std::string_view, bool> globalSwitches_;
};

}  // namespace screens
