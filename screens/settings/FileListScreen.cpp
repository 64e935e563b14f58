#include "screens/settings/FileListScreen.h"

#include <utility>

#include "platform/ui/controls/ImageButton.h"
#include "screens/settings/DirectoryListing.h"
#include "views/VxmFileCell.h"
#include "views/VxmNavBarView.h"

namespace screens {

namespace {

constexpr int bandHeight = 6;
constexpr int yesButton = 1;

}  // namespace

FileListScreen::FileListScreen(const views::Chrome& chrome, std::filesystem::path directory)
    : VxmTableScreen(chrome, bandHeight), directory_(std::move(directory)) {}

void FileListScreen::loadView() {
    auto* bar = new views::VxmNavBarView({0, 0, 320, 40}, *this, true, false, false);
    bar->setTitleString(barTitle());
    auto* reloadButton = bar->addRightButton(QStringLiteral("ReloadButton"), tr("Reload"));
    connect(reloadButton, &platform::ImageButton::clicked, this, &FileListScreen::reload);

    buildView(bar, makeContent(makeTable()));
    listDirectory();
}

QWidget* FileListScreen::makeContent(platform::TableView* table) {
    return table;
}

void FileListScreen::listDirectory() {
    content_ = entriesOf(directory_);
}

void FileListScreen::reload() {
    listDirectory();
    table()->reloadData();
}

void FileListScreen::forgetEntry(int row) {
    content_.erase(content_.begin() + row);
}

int FileListScreen::numberOfRowsInSection(platform::TableView&, int) {
    return int(content_.size());
}

platform::TableViewCell* FileListScreen::cellForRowAtIndexPath(platform::TableView& table,
                                                               platform::IndexPath indexPath) {
    const QString reuseIdentifier = QStringLiteral("Cell");
    auto* cell = static_cast<views::VxmFileCell*>(table.dequeueReusableCell(reuseIdentifier));
    if (!cell) cell = new views::VxmFileCell(chrome(), reuseIdentifier);
    cell->setTitleLabelText(shownName(content_.at(std::size_t(indexPath.row))));
    return cell;
}

void FileListScreen::didSelectRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) {
    table.deselectRow(indexPath, false);
    filename_ = content_.at(std::size_t(indexPath.row));
    const QString name = shownName(filename_);
    importAlert_ =
        new platform::AlertView(importQuestion(name), name, this, QStringLiteral("Cancel"), {QStringLiteral("YES")});
    if (importOverwrites()) importAlert_->setDestructive(yesButton);
    importAlert_->show(&table);
}

void FileListScreen::didDismissWithButtonIndex(platform::AlertView& alert, int buttonIndex) {
    if (&alert == importAlert_ && buttonIndex == yesButton) importFile(pathOf(filename_));
}

}  // namespace screens
