#include "screens/rules/VxmGlobalViewController.h"

#include "platform/ui/table/TableView.h"
#include "screens/rules/Examples.h"
#include "screens/rules/RuleRoutes.h"
#include "store/ConfigurationStore.h"
#include "store/Schema.h"

namespace screens {

namespace {

constexpr int hideAlertButton = 1;
constexpr int importButton = 1;
constexpr int deleteButton = 2;
constexpr int confirmButton = 1;

QString helpText(const QString& afterFirstHost) {
    const QString host = exampleHost();
    return QStringLiteral("Here you can manually enter hostnames or IPs, for example ") + host + afterFirstHost +
           QStringLiteral(
               ". These rules won't override the rules of an app but will take effect if no app-specific rule for the "
               "entered hostname exists. \n If you enter a hostname with an asterix * in front, for example *") +
           host +
           QStringLiteral(
               ", all subdomains which contain that hostname will be allowed. According the example: hostnames like "
               "static.") +
           host + QStringLiteral(".");
}

}  // namespace

VxmGlobalViewController::VxmGlobalViewController(const views::Chrome& chrome, store::ConfigurationStore& store,
                                                 RuleRoutes& routes, bool isDeny)
    : RuleListScreen(chrome, store, isDeny), routes_(routes) {}

std::string_view VxmGlobalViewController::key() const {
    return isDeny() ? store::keys::globalDeny : store::keys::globalAllow;
}

QString VxmGlobalViewController::barTitle() const {
    return isDeny() ? QStringLiteral("Global Deny") : QStringLiteral("Global Allow");
}

QString VxmGlobalViewController::addRuleAlertTitle() const {
    return QStringLiteral("Create Global Rule: enter hostname/IP without www.");
}

store::RuleList VxmGlobalViewController::readRules() const {
    const auto rules = store().read(store::File::globalRules);
    return store::RuleList::load(rules ? rules->find(key()) : nullptr);
}

void VxmGlobalViewController::writeRules(const store::RuleList& rules) const {
    store().change(store::writers::globalRuleList, [&](store::Dictionary& file) { file.set(key(), rules.value()); });
}

std::vector<RuleListScreen::ActionRow> VxmGlobalViewController::actionRows() const {
    std::vector<ActionRow> rows = RuleListScreen::actionRows();
    rows.push_back(
        {QStringLiteral("Import | Delete All"), QStringLiteral("Please be careful!"), QStringLiteral("Import")});
    return rows;
}

void VxmGlobalViewController::didSelectActionRow(int) {
    showImportAlert();
}

void VxmGlobalViewController::viewWillAppear(bool animated) {
    RuleListScreen::viewWillAppear(animated);
    showHelp();
}

void VxmGlobalViewController::showHelp() {
    const bool isFirstUse = !store().exists(store::File::guiSettings);
    if (!isFirstUse) {
        const auto settings = store().read(store::File::guiSettings);
        if (!settings || !store::isTrue(*settings, store::keys::showAllowHelp)) return;
    }
    helpAlert_ = new platform::AlertView(QStringLiteral("Global Allow"),
                                         helpText(isFirstUse ? QString() : QStringLiteral(", which are allowed")), this,
                                         QStringLiteral("Dismiss"), {QStringLiteral("Hide Alert")});
    helpAlert_->show(table());
}

void VxmGlobalViewController::hideHelpFromNowOn() {
    store().change(store::writers::guiFlag,
                   [](store::Dictionary& flags) { flags.set(store::keys::showAllowHelp, store::Value(false)); });
}

void VxmGlobalViewController::showImportAlert() {
    importAlert_ = new platform::AlertView(
        QStringLiteral("Import/Delete"),
        QStringLiteral("Place a list into /Applications/VexmorGUI.app/Lists/ to import it. For more information please "
                       "check the documentation.\nTap on Delete to clear all rules!"),
        this, QStringLiteral("Cancel"), {QStringLiteral("Import"), QStringLiteral("Delete")});
    importAlert_->setDestructive(deleteButton);
    importAlert_->show(table());
}

void VxmGlobalViewController::showDeleteAlert() {
    deleteAlert_ = new platform::AlertView(QStringLiteral("Delete all Rules?"),
                                           QStringLiteral("Do you want to delete all rules in this list?"), this,
                                           QStringLiteral("Cancel"), {QStringLiteral("OK")});
    deleteAlert_->setDestructive(confirmButton);
    deleteAlert_->show(table());
}

void VxmGlobalViewController::didDismissWithButtonIndex(platform::AlertView& alert, int buttonIndex) {
    if (&alert == helpAlert_) {
        helpAlert_ = nullptr;
        if (buttonIndex == hideAlertButton) hideHelpFromNowOn();
    } else if (&alert == importAlert_) {
        importAlert_ = nullptr;
        if (buttonIndex == importButton) routes_.openHostListImport(*this, isDeny());
        if (buttonIndex == deleteButton) showDeleteAlert();
    } else if (&alert == deleteAlert_) {
        deleteAlert_ = nullptr;
        if (buttonIndex == confirmButton) removeAllRules();
    } else {
        RuleListScreen::didDismissWithButtonIndex(alert, buttonIndex);
    }
}

}  // namespace screens
