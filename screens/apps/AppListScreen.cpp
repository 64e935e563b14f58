#include "screens/apps/AppListScreen.h"

#include <cmath>

#include "catalog/VxmAppList.h"
#include "platform/system/ApplicationList.h"
#include "platform/ui/table/TableView.h"
#include "store/text/Search.h"
#include "views/Chrome.h"
#include "views/IconView.h"
#include "views/VxmAppCell.h"
#include "views/VxmNavBarView.h"

namespace screens {

namespace {

constexpr int bandHeight = 3;
constexpr int searchBarHeight = 38;
constexpr int defaultIndentationWidth = 10;
constexpr int placeholderGap = 7;

}  // namespace

AppListScreen::AppListScreen(const views::Chrome& chrome, store::ConfigurationStore& store,
                             platform::ApplicationList& catalog, catalog::IconThreads& iconThreads)
    : VxmTableScreen(chrome, bandHeight), store_(store), catalog_(catalog), iconsToLoad_(catalog, iconThreads) {}

AppListScreen::~AppListScreen() = default;

void AppListScreen::buildAppListView(views::VxmNavBarView* bar) {
    platform::TableView* table = makeTable();
    auto* searchBar = new platform::SearchBar;
    searchBar->resize(chrome().windowSize().width(), searchBarHeight);
    table->setHeaderView(searchBar);
    buildView(bar, table);

    searchCont_ = new platform::SearchDisplayController(searchBar, table, this);
    searchCont_->setDelegate(this);
    searchCont_->setSearchResultsDataSource(this);
    searchCont_->setSearchResultsDelegate(this);

    // Icons are announced on the thread that loaded them; the receiver brings them to the main thread.
    connect(&catalog_, &platform::ApplicationList::iconLoaded, this, &AppListScreen::iconLoaded);
}

std::vector<store::AppInfo>& AppListScreen::appsIn(const platform::TableView& table) {
    return &table == this->table() ? appsArray_ : filteredApps_;
}

const store::AppInfo& AppListScreen::appAt(const platform::TableView& table, platform::IndexPath indexPath) {
    return appsIn(table).at(std::size_t(indexPath.row));
}

void AppListScreen::setApps(std::vector<store::AppInfo> apps) {
    // Not before: the catalog may still be being read when the view is made.
    if (defaultImage_.isNull())
        defaultImage_ = catalog_.iconOfSize(catalog::iconSize, QStringLiteral("com.apple.WebSheet"));
    store::alphabeticAppInfoSort(apps, nameOrder_);
    appsArray_ = std::move(apps);
    table()->reloadData();
}

int AppListScreen::numberOfSectionsInTableView(platform::TableView& table) {
    return &table == this->table() ? appSection() + 1 : 1;
}

int AppListScreen::numberOfRowsInSection(platform::TableView& table, int) {
    return int(appsIn(table).size());
}

void AppListScreen::prepareCell(views::VxmAppCell&) const {}

views::VxmAppCell* AppListScreen::dequeueAppCell(platform::TableView& table) {
    const QString reuseIdentifier = QStringLiteral("Cell");
    if (auto* used = table.dequeueReusableCell(reuseIdentifier)) return static_cast<views::VxmAppCell*>(used);
    auto* cell = new views::VxmAppCell(chrome(), reuseIdentifier);
    prepareCell(*cell);
    return cell;
}

platform::TableViewCell* AppListScreen::cellForRowAtIndexPath(platform::TableView& table,
                                                              platform::IndexPath indexPath) {
    views::VxmAppCell* cell = dequeueAppCell(table);
    const store::AppInfo& app = appAt(table, indexPath);
    const QString identifier = QString::fromStdString(app.bundleIdentifier);
    cell->setTitleLabelText(QString::fromStdString(app.displayName));
    showIcon(*cell, identifier);
    cell->setUnderTextLabelText(identifier);
    return cell;
}

void AppListScreen::showIcon(views::VxmAppCell& cell, const QString& identifier) {
    if (catalog_.hasCachedIconOfSize(catalog::iconSize, identifier)) {
        cell.appImageView()->setImage(catalog_.iconOfSize(catalog::iconSize, identifier));
        cell.setIndentationLevel(0);
        return;
    }
    cell.appImageView()->setImage(defaultImage_);
    // At a fractional scale an icon is a part of a point wider than its size: whole pixels.
    const bool isIconSized = std::abs(defaultImage_.deviceIndependentSize().width() - catalog::iconSize) < 1;
    if (!isIconSized) cell.setIndentationWidth(catalog::iconSize + placeholderGap);
    cell.setIndentationLevel(isIconSized ? 0 : 1);
}

// Not when the cell is made: a screen reader asks for rows that nobody sees.
void AppListScreen::willDisplayCell(platform::TableView& table, platform::TableViewCell&,
                                    platform::IndexPath indexPath) {
    if (&table == this->table() && indexPath.section != appSection()) return;
    const QString identifier = QString::fromStdString(appAt(table, indexPath).bundleIdentifier);
    if (!catalog_.hasCachedIconOfSize(catalog::iconSize, identifier)) iconsToLoad_.request(identifier);
}

void AppListScreen::iconLoaded(const QString& identifier) {
    for (platform::TableView* table : searchCont_->tables()) {
        table->forEachCell([&](platform::IndexPath indexPath, platform::TableViewCell& cell) {
            if (table == this->table() && indexPath.section != appSection()) return;
            if (QString::fromStdString(appAt(*table, indexPath).bundleIdentifier) != identifier) return;
            replacePlaceholder(static_cast<views::VxmAppCell&>(cell), identifier);
        });
    }
}

void AppListScreen::replacePlaceholder(views::VxmAppCell& cell, const QString& identifier) {
    const QImage& shown = cell.appImageView()->image();
    if (!shown.isNull() && shown.cacheKey() != defaultImage_.cacheKey()) return;
    cell.setIndentationLevel(0);
    cell.setIndentationWidth(defaultIndentationWidth);
    cell.appImageView()->setImage(catalog_.iconOfSize(catalog::iconSize, identifier));
}

void AppListScreen::filterContentForSearchText(const QString& text, int) {
    filteredApps_.clear();
    const store::SearchText searched(text.toStdString());
    for (const store::AppInfo& app : appsArray_) {
        if (searched.matches(app.displayName)) filteredApps_.push_back(app);
    }
}

bool AppListScreen::shouldReloadTableForSearchString(platform::SearchDisplayController& controller,
                                                     const QString& text) {
    filterContentForSearchText(text, controller.searchBar()->selectedScopeButtonIndex());
    return true;
}

bool AppListScreen::shouldReloadTableForSearchScope(platform::SearchDisplayController& controller, int scope) {
    filterContentForSearchText(controller.searchBar()->text(), scope);
    return true;
}

}  // namespace screens
