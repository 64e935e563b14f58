#include "views/VxmSwitchScreen.h"

#include <optional>

#include "platform/ui/controls/Switch.h"
#include "platform/ui/table/TableView.h"
#include "views/Palette.h"
#include "views/VxmRuleCell.h"

namespace views {

namespace {

using Accessory = platform::TableViewCell::Accessory;
using SelectionStyle = platform::TableViewCell::SelectionStyle;

constexpr int bandHeight = 6;

}  // namespace

VxmSwitchScreen::VxmSwitchScreen(const Chrome& chrome) : VxmTableScreen(chrome, bandHeight) {}

// --- Describing the table

VxmSwitchScreen::Row VxmSwitchScreen::switchRow(const char16_t* title, const char16_t* underText, const Toggle& toggle,
                                                const Action& open) {
    return {title, underText, toggle, open, Accessory::none, open ? SelectionStyle::gray : SelectionStyle::none};
}

VxmSwitchScreen::Row VxmSwitchScreen::screenRow(const char16_t* title, const char16_t* underText, const Action& open) {
    return {title, underText, {}, open, Accessory::disclosureIndicator, SelectionStyle::gray};
}

VxmSwitchScreen::Row VxmSwitchScreen::commandRow(const char16_t* title, const char16_t* underText,
                                                 const Action& select) {
    return {title, underText, {}, select};
}

const VxmSwitchScreen::Row& VxmSwitchScreen::row(platform::IndexPath indexPath) const {
    return sections_.at(std::size_t(indexPath.section)).at(std::size_t(indexPath.row));
}

// --- The table

int VxmSwitchScreen::numberOfSectionsInTableView(platform::TableView&) {
    return int(sections_.size());
}

int VxmSwitchScreen::numberOfRowsInSection(platform::TableView&, int section) {
    return int(sections_.at(std::size_t(section)).size());
}

bool VxmSwitchScreen::canEditRowAtIndexPath(platform::TableView&, platform::IndexPath) {
    return false;
}

platform::TableViewCell* VxmSwitchScreen::cellForRowAtIndexPath(platform::TableView& table,
                                                                platform::IndexPath indexPath) {
    const QString reuseIdentifier = QStringLiteral("RCell");
    auto* cell = static_cast<VxmRuleCell*>(table.dequeueReusableCell(reuseIdentifier));
    if (!cell) cell = new VxmRuleCell(chrome(), reuseIdentifier);
    const Row& shown = row(indexPath);
    cell->setTitleLabelText(QString::fromUtf16(shown.title));
    cell->setUnderTextLabelText(shown.underText ? std::optional(QString::fromUtf16(shown.underText)) : std::nullopt);
    cell->setSelectionStyle(shown.selectionStyle);
    cell->setAccessory(shown.accessory);
    cell->setAccessoryView(shown.toggle.isOn ? makeSwitch(shown) : nullptr);
    return cell;
}

void VxmSwitchScreen::didSelectRowAtIndexPath(platform::TableView& table, platform::IndexPath indexPath) {
    table.deselectRow(indexPath, false);
    if (const Row& tapped = row(indexPath); tapped.select) tapped.select();
}

// --- The switches

QWidget* VxmSwitchScreen::makeSwitch(const Row& row) {
    auto* made = new platform::Switch;
    made->setAccessibleName(QString::fromUtf16(row.title));
    made->setOnTintColor(palette::accent);
    made->setOn(row.toggle.isOn(), false);
    made->setEnabled(row.toggle.isEnabled());
    connect(made, &platform::Switch::valueChanged, this, [this, &row](platform::Switch* sender) {
        row.toggle.turn(sender->isOn());
        showSwitches(true);
    });
    return made;
}

void VxmSwitchScreen::showSwitches(bool animated) {
    table()->forEachCell([&](platform::IndexPath indexPath, platform::TableViewCell& cell) {
        platform::Switch* shown = cell.accessorySwitch();
        if (!shown) return;
        const Toggle& toggle = row(indexPath).toggle;
        shown->setOn(toggle.isOn(), animated);
        shown->setEnabled(toggle.isEnabled());
    });
}

}  // namespace views
