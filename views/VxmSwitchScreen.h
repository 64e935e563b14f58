#pragma once

#include <functional>
#include <vector>

#include "platform/ui/table/TableViewCell.h"
#include "views/VxmTableScreen.h"

namespace views {

// The base class of the screens of switches: a table that a subclass describes row by row, as title, second line,
// switch and action. Rows cannot be deleted; a thin band separates the sections.
class VxmSwitchScreen : public VxmTableScreen {
    Q_OBJECT
public:
    // `chrome` outlives the screen.
    explicit VxmSwitchScreen(const Chrome& chrome);

    int numberOfSectionsInTableView(platform::TableView& table) override;
    int numberOfRowsInSection(platform::TableView& table, int section) override;
    platform::TableViewCell* cellForRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    bool canEditRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;
    void didSelectRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) override;

protected:
    using Action = std::function<void()>;

    // A switch: `isOn` is queried whenever it is shown; `turn` handles a change by the user. After `turn` all switches
    // of the table are updated.
    struct Toggle {
        std::function<bool()> isOn;
        std::function<void(bool on)> turn;
        std::function<bool()> isEnabled = [] { return true; };
    };

    struct Row {
        const char16_t* title;
        const char16_t* underText;  // nullptr: none
        Toggle toggle;              // without `isOn`: the row has no switch
        Action select;              // what a tap on the row does; may be empty
        platform::TableViewCell::Accessory accessory = platform::TableViewCell::Accessory::none;
        platform::TableViewCell::SelectionStyle selectionStyle = platform::TableViewCell::SelectionStyle::none;
    };
    using Section = std::vector<Row>;

    // A row with a switch. One that also opens a screen turns grey when it is tapped.
    static Row switchRow(const char16_t* title, const char16_t* underText, const Toggle& toggle,
                         const Action& open = {});
    // A row that opens a screen.
    static Row screenRow(const char16_t* title, const char16_t* underText, const Action& open);
    // A row that does something at once.
    static Row commandRow(const char16_t* title, const char16_t* underText, const Action& select);

    // Called once, before the table is made.
    void setSections(std::vector<Section> sections) { sections_ = std::move(sections); }

    // Updates every switch of the table from its state.
    void showSwitches(bool animated);

private:
    const Row& row(platform::IndexPath indexPath) const;
    QWidget* makeSwitch(const Row& row);

    std::vector<Section> sections_;
};

}  // namespace views
