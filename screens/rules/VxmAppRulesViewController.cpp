#include "screens/rules/VxmAppRulesViewController.h"

#include "store/ConfigurationStore.h"
#include "store/Schema.h"

namespace screens {

VxmAppRulesViewController::VxmAppRulesViewController(const views::Chrome& chrome, store::ConfigurationStore& store,
                                                     bool isDeny, const QString& bundleIdentifier,
                                                     const QString& displayName)
    : RuleListScreen(chrome, store, isDeny), bundleID_(bundleIdentifier), displayName_(displayName) {}

std::string_view VxmAppRulesViewController::key() const {
    return isDeny() ? store::keys::deny : store::keys::allow;
}

QString VxmAppRulesViewController::barTitle() const {
    return isDeny() ? QStringLiteral("Always Deny") : QStringLiteral("Always Allow");
}

QString VxmAppRulesViewController::addRuleAlertTitle() const {
    return QStringLiteral("Create Rule: enter hostname/IP without www.");
}

store::RuleList VxmAppRulesViewController::readRules() const {
    const auto rules = store().read(store::File::appRules);
    if (!rules) return {};
    const auto record = store::AppRuleRecord::of(*rules, bundleID_.toStdString());
    return store::RuleList::load(record.dictionary().find(key()));
}

void VxmAppRulesViewController::writeRules(const store::RuleList& rules) const {
    const std::string bundleIdentifier = bundleID_.toStdString();
    store().change(store::writers::appRuleList, [&](store::Dictionary& file) {
        auto record = store::AppRuleRecord::of(file, bundleIdentifier);
        record.dictionary().set(key(), rules.value());
        record.storeIn(file, bundleIdentifier);
    });
}

}  // namespace screens
