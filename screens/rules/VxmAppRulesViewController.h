#pragma once

#include "screens/rules/RuleListScreen.h"

namespace screens {

// One app's own host list, allow or deny, inside its record in the app rules file.
class VxmAppRulesViewController : public RuleListScreen {
    Q_OBJECT
public:
    // `chrome` and `store` outlive the screen.
    VxmAppRulesViewController(const views::Chrome& chrome, store::ConfigurationStore& store, bool isDeny,
                              const QString& bundleIdentifier, const QString& displayName);

    const QString& bundleID() const { return bundleID_; }
    const QString& displayName() const { return displayName_; }

protected:
    QString barTitle() const override;
    QString addRuleAlertTitle() const override;
    store::RuleList readRules() const override;
    void writeRules(const store::RuleList& rules) const override;

private:
    std::string_view key() const;

    QString bundleID_;
    QString displayName_;
};

}  // namespace screens
