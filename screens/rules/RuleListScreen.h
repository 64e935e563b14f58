#pragma once

#include <QPointer>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/ui/alert/AlertView.h"
#include "platform/ui/controls/TextField.h"
#include "platform/ui/search/SearchDisplayController.h"
#include "screens/rules/DateFormatter.h"
#include "store/rules/RuleList.h"
#include "store/sorting/Ordering.h"
#include "views/VxmTableScreen.h"

namespace store {
class ConfigurationStore;
}

namespace views {
class VxmNavBarView;
class VxmRuleCell;
}  // namespace views

namespace screens {

class RuleListHeader;

// A list of host rules that the person keeps: added through an alert with a field, edited in place in edit mode,
// deleted, sorted by name or date, searched. Every appearance reads the list from its file, every change writes it
// back whole. The lists of all apps and of one app differ in where they are kept and in the rows above the rules.
class RuleListScreen : public views::VxmTableScreen,
                       public platform::SearchDisplayDelegate,
                       public platform::AlertViewDelegate,
                       public platform::TextFieldDelegate {
    Q_OBJECT
public:
    // `chrome` and `store` outlive the screen.
    RuleListScreen(const views::Chrome& chrome, store::ConfigurationStore& store, bool isDeny);
    ~RuleListScreen() override;

    bool isDeny() const { return isDeny_; }
    const store::RuleList& rulesArray() const { return rulesArray_; }
    // The rows of the search, as positions in rulesArray().
    const store::LargeVector<std::uint32_t>& filteredRulesArray() const { return filteredRulesArray_; }
    store::RuleOrder sortBy() const { return sortBy_; }
    bool isEditing() const { return isEditing_; }
    platform::SearchDisplayController* searchController() const { return searchCont_; }
    RuleListHeader* header() const { return header_; }
    views::VxmNavBarView* navBarView() const { return navBarView_; }

    void filterContentForSearchText(const QString& text, int scope);
    void setEditMode(platform::ImageButton& sender) override;

    int numberOfSectionsInTableView(platform::TableView& table) override;
    int numberOfRowsInSection(platform::TableView& table, int section) override;
    platform::TableViewCell* cellForRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    bool canEditRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    void commitEditingStyle(platform::TableView& table, platform::EditingStyle style,
                            platform::IndexPath indexPath) override;
    void didSelectRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;

    void willBeginSearch(platform::SearchDisplayController& controller) override;
    bool shouldReloadTableForSearchString(platform::SearchDisplayController& controller, const QString& text) override;
    bool shouldReloadTableForSearchScope(platform::SearchDisplayController& controller, int scope) override;

    void willDismissWithButtonIndex(platform::AlertView& alert, int buttonIndex) override;
    void didDismissWithButtonIndex(platform::AlertView& alert, int buttonIndex) override;

    void didBeginEditing(platform::TextField& field) override;
    void didEndEditing(platform::TextField& field) override;
    bool shouldReturn(platform::TextField& field) override;

protected:
    // A row above the rules that opens something.
    struct ActionRow {
        QString title;
        QString underText;
        QString image;
    };

    virtual QString barTitle() const = 0;
    virtual QString addRuleAlertTitle() const = 0;
    // Reads the list from its file, in stored order.
    virtual store::RuleList readRules() const = 0;
    // Writes the list to its file.
    virtual void writeRules(const store::RuleList& rules) const = 0;
    // The rows above the rules, the add row first.
    virtual std::vector<ActionRow> actionRows() const;
    // A row other than the add row was chosen.
    virtual void didSelectActionRow(int row);

    void loadView() override;
    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;

    store::ConfigurationStore& store() const { return store_; }
    void removeAllRules();

private:
    bool isActionRow(const platform::TableView& table, platform::IndexPath indexPath) const;
    std::size_t positionAt(const platform::TableView& table, platform::IndexPath indexPath) const;
    platform::TableViewCell* actionCell(platform::TableView& table, int row);
    void fill(views::VxmRuleCell& cell, std::size_t position) const;

    void showAddRuleAlert();
    void addRule();
    // Comes before whatever gives rows other places, so that what was typed reaches the rule it was typed for.
    void endEditing();
    void commitEdit(platform::TextField& field, const std::string& rule);
    void deleteFromSearch(platform::TableView& searchTable, int row);
    void sortRules(int tag);
    void showEditAlertOnce();

    store::ConfigurationStore& store_;
    bool isDeny_;
    DateFormatter dateFormatter_;
    store::NameOrder nameOrder_;
    store::RuleList rulesArray_;
    store::LargeVector<std::uint32_t> filteredRulesArray_;
    store::RuleOrder sortBy_ = store::RuleOrder::name;
    bool isEditing_ = false;
    std::string textFieldString_;
    QPointer<platform::AlertView> ruleAlert_;
    QPointer<platform::TextField> ruleField_;
    QPointer<platform::TextField> editedField_;  // of the row that is or was edited last
    views::VxmNavBarView* navBarView_ = nullptr;
    RuleListHeader* header_ = nullptr;
    platform::SearchDisplayController* searchCont_ = nullptr;
};

}  // namespace screens
