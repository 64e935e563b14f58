#pragma once

#include "platform/ui/table/TableView.h"
#include "views/VxmScreen.h"

namespace views {

// The base class of all screens with a table: rows of 50 points without separators, and as footer a thin coloured band
// after every section but the last.
class VxmTableScreen : public VxmScreen, public platform::TableViewDataSource, public platform::TableViewDelegate {
    Q_OBJECT
public:
    VxmTableScreen(const Chrome& chrome, int footerHeight) : VxmScreen(chrome), footerHeight_(footerHeight) {}

    platform::TableView* table() const { return table_; }

    int heightForRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    int heightForFooterInSection(platform::TableView& table, int section) override;
    QWidget* viewForFooterInSection(platform::TableView& table, int section) override;

protected:
    // Creates the screen's table with this screen as data source and delegate.
    platform::TableView* makeTable();

private:
    platform::TableView* table_ = nullptr;
    int footerHeight_;
};

}  // namespace views
