#include "views/VxmTableScreen.h"

#include <QWidget>

#include "views/Palette.h"

namespace views {

namespace {

constexpr int rowHeight = 50;

}  // namespace

platform::TableView* VxmTableScreen::makeTable() {
    table_ = new platform::TableView;
    table_->setDataSource(this);
    table_->setDelegate(this);
    return table_;
}

int VxmTableScreen::heightForRowAtIndexPath(platform::TableView&, platform::IndexPath) {
    return rowHeight;
}

int VxmTableScreen::heightForFooterInSection(platform::TableView& table, int section) {
    return section == numberOfSectionsInTableView(table) - 1 ? 0 : footerHeight_;
}

QWidget* VxmTableScreen::viewForFooterInSection(platform::TableView& table, int section) {
    if (section == numberOfSectionsInTableView(table) - 1) return nullptr;
    auto* band = new QWidget;
    band->setAutoFillBackground(true);
    QPalette colours = band->palette();
    colours.setColor(QPalette::Window, palette::quiet);
    band->setPalette(colours);
    band->resize(320, footerHeight_);
    return band;
}

}  // namespace views
