#pragma once

#include "screens/rules/RuleListScreen.h"

namespace screens {

class RuleRoutes;

// One of the two global host lists, allow or deny, with its import and "delete all" and the help on first use.
class VxmGlobalViewController : public RuleListScreen {
    Q_OBJECT
public:
    // All of these outlive the screen.
    VxmGlobalViewController(const views::Chrome& chrome, store::ConfigurationStore& store, RuleRoutes& routes,
                            bool isDeny);

    void didDismissWithButtonIndex(platform::AlertView& alert, int buttonIndex) override;

protected:
    void viewWillAppear(bool animated) override;

    QString barTitle() const override;
    QString addRuleAlertTitle() const override;
    store::RuleList readRules() const override;
    void writeRules(const store::RuleList& rules) const override;
    std::vector<ActionRow> actionRows() const override;
    void didSelectActionRow(int row) override;

private:
    std::string_view key() const;
    void showHelp();
    void hideHelpFromNowOn();
    void showImportAlert();
    void showDeleteAlert();

    RuleRoutes& routes_;
    QPointer<platform::AlertView> helpAlert_;
    QPointer<platform::AlertView> importAlert_;
    QPointer<platform::AlertView> deleteAlert_;
};

}  // namespace screens
