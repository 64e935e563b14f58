#include "screens/rules/RuleListScreen.h"

#include <algorithm>
#include <chrono>

#include "platform/ui/controls/ImageButton.h"
#include "platform/ui/table/TableView.h"
#include "screens/rules/AddRuleAlert.h"
#include "screens/rules/RuleListHeader.h"
#include "screens/rules/SortSelector.h"
#include "store/ConfigurationStore.h"
#include "store/Schema.h"
#include "store/text/Search.h"
#include "views/IconView.h"
#include "views/VxmAppCell.h"
#include "views/VxmNavBarView.h"
#include "views/VxmRuleCell.h"

namespace screens {

namespace {

constexpr int bandHeight = 3;
constexpr int actionSection = 0;
constexpr int ruleSection = 1;
constexpr int addRow = 0;
constexpr int okButton = 1;

store::Date now() {
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
}

}  // namespace

RuleListScreen::RuleListScreen(const views::Chrome& chrome, store::ConfigurationStore& store, bool isDeny)
    : VxmTableScreen(chrome, bandHeight), store_(store), isDeny_(isDeny) {}

RuleListScreen::~RuleListScreen() = default;

// --- The view

void RuleListScreen::loadView() {
    navBarView_ = new views::VxmNavBarView({0, 0, 320, 40}, *this, true, false, true);
    navBarView_->setTitleString(barTitle());

    platform::TableView* table = makeTable();
    header_ = new RuleListHeader(chrome());
    table->setHeaderView(header_);
    connect(header_->sortSelector(), &SortSelector::capButtonPressed, this, &RuleListScreen::sortRules);
    buildView(navBarView_, table);

    searchCont_ = new platform::SearchDisplayController(header_->searchBar(), table, this);
    searchCont_->setDelegate(this);
    searchCont_->setSearchResultsDataSource(this);
    searchCont_->setSearchResultsDelegate(this);
}

void RuleListScreen::viewDidLoad() {
    VxmTableScreen::viewDidLoad();
    table()->setAllowsSelectionDuringEditing(true);
}

void RuleListScreen::viewWillAppear(bool animated) {
    VxmTableScreen::viewWillAppear(animated);
    rulesArray_ = readRules();
    rulesArray_.sort(store::RuleOrder::name, nameOrder_);
    filteredRulesArray_.clear();
    table()->reloadData();
}

// --- The table

std::vector<RuleListScreen::ActionRow> RuleListScreen::actionRows() const {
    return {{QStringLiteral("Add Hostname/IP"), QStringLiteral("For details please consult the help page."),
             QStringLiteral("Add")}};
}

void RuleListScreen::didSelectActionRow(int) {}

bool RuleListScreen::isActionRow(const platform::TableView& table, platform::IndexPath indexPath) const {
    return &table == this->table() && indexPath.section == actionSection;
}

std::size_t RuleListScreen::positionAt(const platform::TableView& table, platform::IndexPath indexPath) const {
    return &table == this->table() ? std::size_t(indexPath.row) : filteredRulesArray_.at(std::size_t(indexPath.row));
}

int RuleListScreen::numberOfSectionsInTableView(platform::TableView& table) {
    return &table == this->table() ? 2 : 1;
}

int RuleListScreen::numberOfRowsInSection(platform::TableView& table, int section) {
    if (&table != this->table()) return int(filteredRulesArray_.size());
    return section == actionSection ? int(actionRows().size()) : int(rulesArray_.size());
}

platform::TableViewCell* RuleListScreen::cellForRowAtIndexPath(platform::TableView& table,
                                                               platform::IndexPath indexPath) {
    if (isActionRow(table, indexPath)) return actionCell(table, indexPath.row);
    const QString reuseIdentifier = QStringLiteral("RCell");
    auto* cell = static_cast<views::VxmRuleCell*>(table.dequeueReusableCell(reuseIdentifier));
    if (!cell) cell = new views::VxmRuleCell(chrome(), reuseIdentifier);
    fill(*cell, positionAt(table, indexPath));
    cell->titleTextField()->setDelegate(this);
    return cell;
}

platform::TableViewCell* RuleListScreen::actionCell(platform::TableView& table, int row) {
    const QString reuseIdentifier = QStringLiteral("Cell");
    auto* cell = static_cast<views::VxmAppCell*>(table.dequeueReusableCell(reuseIdentifier));
    if (!cell) cell = new views::VxmAppCell(chrome(), reuseIdentifier);
    const ActionRow action = actionRows().at(std::size_t(row));
    cell->setTitleLabelText(action.title);
    cell->setUnderTextLabelText(action.underText);
    cell->appImageView()->setImageNamed(action.image);
    return cell;
}

void RuleListScreen::fill(views::VxmRuleCell& cell, std::size_t position) const {
    cell.setTitleLabelText(text(rulesArray_.rule(position)));
    const auto date = rulesArray_.date(position);
    cell.setUnderTextLabelText(date ? std::optional(dateFormatter_.stringFromDate(*date)) : std::nullopt);
}

bool RuleListScreen::canEditRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) {
    return !isActionRow(table, indexPath);
}

void RuleListScreen::didSelectRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) {
    table.deselectRow(indexPath, false);
    if (isActionRow(table, indexPath)) {
        indexPath.row == addRow ? showAddRuleAlert() : didSelectActionRow(indexPath.row);
    } else if (isEditing_) {
        if (auto* cell = static_cast<views::VxmRuleCell*>(table.cellForRow(indexPath))) {
            cell->titleTextField()->becomeFirstResponder();
        }
    }
}

// --- Adding

void RuleListScreen::showAddRuleAlert() {
    const AddRuleAlert made = makeAddRuleAlert(addRuleAlertTitle(), *this, *this);
    ruleAlert_ = made.alert;
    ruleField_ = made.field;
    ruleAlert_->show(table());
}

void RuleListScreen::willDismissWithButtonIndex(platform::AlertView& alert, int) {
    if (&alert == ruleAlert_ && ruleField_) ruleField_->resignFirstResponder();
}

void RuleListScreen::didDismissWithButtonIndex(platform::AlertView& alert, int buttonIndex) {
    if (&alert != ruleAlert_) return;
    ruleAlert_ = nullptr;
    if (buttonIndex == okButton && !textFieldString_.empty()) addRule();
}

void RuleListScreen::addRule() {
    endEditing();
    if (!rulesArray_.isSorted(sortBy_)) {
        // An edit left its row where it was. The list is sorted again now, and the rows have to show it.
        rulesArray_.sort(sortBy_, nameOrder_);
        table()->reloadData();
    }
    const std::size_t position = rulesArray_.add(textFieldString_, now(), sortBy_, nameOrder_);
    writeRules(rulesArray_);
    table()->insertRow({ruleSection, int(position)}, platform::RowAnimation::fade);
}

// --- Editing in place

// A field is known by what it is and by where it stands now. Numbers given to fields would not do: the alert's would be
// a row's as well, and a row's would be another one's once rows above it have come or gone.

void RuleListScreen::didBeginEditing(platform::TextField& field) {
    if (&field == ruleField_) return;
    editedField_ = &field;
    navBarView_->changeEditButtonVisibility(false);
}

bool RuleListScreen::shouldReturn(platform::TextField& field) {
    field.resignFirstResponder();
    return true;
}

void RuleListScreen::didEndEditing(platform::TextField& field) {
    navBarView_->changeEditButtonVisibility(true);
    const std::string typed = store::lowercase(field.text().toStdString());
    if (&field == ruleField_) {
        textFieldString_ = typed;
    } else {
        commitEdit(field, typed);
    }
}

void RuleListScreen::endEditing() {
    if (editedField_) editedField_->resignFirstResponder();
}

void RuleListScreen::commitEdit(platform::TextField& field, const std::string& rule) {
    platform::TableView* searchTable = searchCont_->searchResultsTableView();
    const bool isInSearch = searchTable->isAncestorOf(&field);
    const platform::TableView& edited = isInSearch ? *searchTable : *table();
    const auto indexPath = edited.indexPathForCell(&field);
    if (!indexPath) return;
    const std::size_t position = positionAt(edited, *indexPath);
    rulesArray_.replace(position, rule, now());
    writeRules(rulesArray_);
    // Only this row looks different. Rebuilding the others would pull them from under the touch that ended the edit.
    if (auto* cell = static_cast<views::VxmRuleCell*>(edited.cellForRow(*indexPath))) fill(*cell, position);
    if (isInSearch) table()->reloadData();
}

// --- Deleting

void RuleListScreen::commitEditingStyle(platform::TableView& table, platform::EditingStyle style,
                                        platform::IndexPath indexPath) {
    if (style != platform::EditingStyle::remove) return;
    if (&table != this->table()) {
        deleteFromSearch(table, indexPath.row);
        return;
    }
    rulesArray_.remove(std::size_t(indexPath.row));
    writeRules(rulesArray_);
    table.deleteRow(indexPath, platform::RowAnimation::left);
}

void RuleListScreen::deleteFromSearch(platform::TableView& searchTable, int row) {
    const std::vector<std::size_t> removed = rulesArray_.removeEqual(filteredRulesArray_.at(std::size_t(row)));
    writeRules(rulesArray_);
    for (int each = int(filteredRulesArray_.size()) - 1; each >= 0; --each) {
        std::uint32_t& position = filteredRulesArray_[std::size_t(each)];
        const auto atOrBehind = std::lower_bound(removed.begin(), removed.end(), position);
        if (atOrBehind != removed.end() && *atOrBehind == position) {
            filteredRulesArray_.erase(filteredRulesArray_.begin() + each);
            searchTable.deleteRow({0, each}, platform::RowAnimation::left);
        } else {
            position -= std::uint32_t(atOrBehind - removed.begin());
        }
    }
    table()->reloadData();
}

void RuleListScreen::removeAllRules() {
    endEditing();
    rulesArray_.clear();
    writeRules(rulesArray_);
    table()->reloadData();
}

// --- Sorting and searching

void RuleListScreen::sortRules(int tag) {
    endEditing();
    sortBy_ = tag == 1 ? store::RuleOrder::date : store::RuleOrder::name;
    searchCont_->setActive(false, false);
    header_->searchBar()->setVisible(sortBy_ == store::RuleOrder::name);
    rulesArray_.sort(sortBy_, nameOrder_);
    table()->reloadData();
}

void RuleListScreen::filterContentForSearchText(const QString& text, int) {
    filteredRulesArray_ = rulesArray_.search(text.toStdString());
}

// Who has gone to the field takes a moment to find the first key.
void RuleListScreen::willBeginSearch(platform::SearchDisplayController&) {
    rulesArray_.prepareSearch();
}

bool RuleListScreen::shouldReloadTableForSearchString(platform::SearchDisplayController& controller,
                                                      const QString& text) {
    filterContentForSearchText(text, controller.searchBar()->selectedScopeButtonIndex());
    return true;
}

bool RuleListScreen::shouldReloadTableForSearchScope(platform::SearchDisplayController& controller, int scope) {
    filterContentForSearchText(controller.searchBar()->text(), scope);
    return true;
}

// --- Edit mode

void RuleListScreen::setEditMode(platform::ImageButton& sender) {
    showEditAlertOnce();
    platform::TableView* searchTable = searchCont_->searchResultsTableView();
    isEditing_ = !isEditing_;
    sender.setImage(isEditing_ ? QStringLiteral("AcceptButton") : QStringLiteral("EditButton"));
    sender.setAccessibleName(isEditing_ ? tr("Done") : tr("Edit"));
    table()->setEditing(isEditing_, true);
    searchTable->setEditing(isEditing_, true);
}

void RuleListScreen::showEditAlertOnce() {
    if (!store_.raiseFlag(store::keys::didShowEditAlert)) return;
    auto* alert = new platform::AlertView(
        QStringLiteral("Edit Mode"),
        QStringLiteral("While in edit mode you can tap the text of a rule and manually change it."), nullptr,
        QStringLiteral("OK"));
    alert->show(table());
}

}  // namespace screens
