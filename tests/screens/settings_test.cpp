// The settings screen: what its switches show, what they leave in the files, and what the engine is told when.
#include <gtest/gtest.h>

#include "platform/ui/controls/Switch.h"
#include "screens/Documents.h"
#include "screens/settings/VxmSettingsViewController.h"
#include "store/Schema.h"
#include "support/TestDevice.h"
#include "support/Unreadable.h"

namespace {

using store::File;

const std::vector<documents::Switch>& globalSwitches() {
    static const auto switches = documents::switches(QStringLiteral("**Global rules:**"));
    return switches;
}

struct SettingsTest : testing::Test {
    void open() {
        device.launch();
        device.tap(26, 20);
    }
    bool isOn(QStringView title) const { return device.cell(title)->accessorySwitch()->isOn(); }
    void toggle(QStringView title) { device.tapRow(title, 285); }
    static std::optional<bool> flag(const std::optional<store::Dictionary>& file, std::string_view key) {
        const store::Value* value = file ? file->find(key) : nullptr;
        return value ? value->boolean() : std::nullopt;
    }

    TestDevice device;
};

TEST_F(SettingsTest, ShowsStoredValuesByTheirTruth) {
    device.put(File::globalRules,
               "<dict><key>log</key><integer>1</integer><key>blockNonWiFi</key><true/><key>respectGlobal</key><false/>"
               "<key>denyTabFront</key><array/></dict>");
    device.launch();
    device.putBytes(device.path(File::globalRules).parent_path() / "com.Urmeld.Firewall.disabled", "");
    device.tap(26, 20);
    EXPECT_FALSE(isOn(u"Enabled"));
    for (const auto& [key, title] : globalSwitches()) EXPECT_EQ(isOn(title), key == "log" || key == "blockNonWiFi");
    for (const QStringView title : {u"Enabled", u"Deny Tab In Front"}) device.tapRow(title);
    EXPECT_TRUE(qobject_cast<screens::VxmSettingsViewController*>(device.screen()));
    EXPECT_TRUE(device.posts().empty()) << "a row is not its switch";
}

TEST_F(SettingsTest, RowsKeepTheirLookWhenTheirCellsAreUsedAgain) {
    using Cell = platform::TableViewCell;
    // Whether the row can be pressed, leads on and has a switch.
    const std::pair<QStringView, std::array<bool, 3>> looks[] = {
        {u"Enabled", {false, false, true}},
        {u"Documentation", {true, true, false}},
        {u"Log", {true, false, true}},
        {u"Deny Tab In Front", {false, false, true}},
        {u"Delete All Rules and Settings", {false, false, false}},
    };
    open();
    device.window()->resize(320, 140);  // few rows in sight: cells go round
    for (int round = 0; round < 2; ++round) {
        for (const auto& [title, look] : looks) {
            const Cell* cell = device.cell(title);
            EXPECT_EQ((std::array{cell->selectionStyle() == Cell::SelectionStyle::gray,
                                  cell->accessory() == Cell::Accessory::disclosureIndicator,
                                  cell->accessoryView() != nullptr}),
                      look)
                << title.toString().toStdString();
        }
    }
}

TEST_F(SettingsTest, SwitchesWriteAndThenPost) {
    ASSERT_EQ(globalSwitches().size(), store::keys::globalSwitches.size());
    device.put(File::globalRules, "<dict><key>own</key><string>kept</string></dict>");
    open();
    for (const auto& [key, title] : globalSwitches()) {
        SCOPED_TRACE(key);
        for (const bool on : {true, false}) {
            const std::size_t before = device.posts().size();
            toggle(title);
            ASSERT_EQ(device.posts().size(), before + 1);
            const TestDevice::Post& post = device.posts().back();
            EXPECT_EQ(post.name, store::reloadBoth);
            EXPECT_EQ(flag(post.globalRules, key), on);
            EXPECT_EQ(flag(post.globalRules, "150"), true);
            EXPECT_TRUE(post.globalRules->contains("own"));
            EXPECT_EQ(post.isAlertShown, on && key == "log") << "a person is asked to read before the engine hears";
            if (device.alert()) device.answer(0);
        }
    }
    for (const bool disabled : {true, false}) {
        toggle(u"Enabled");
        EXPECT_EQ(device.posts().back().name, store::reloadBoth);
        EXPECT_EQ(device.posts().back().isDisabled, disabled);
    }
}

TEST_F(SettingsTest, SwitchKeepsWhatOthersWroteInTheMeantime) {
    open();
    device.put(File::globalRules, "<dict><key>globalDeny</key><array/><key>log</key><true/></dict>");
    toggle(u"Deny Tab In Front");
    const auto file = device.plist(File::globalRules);
    EXPECT_TRUE(file->contains("globalDeny"));
    EXPECT_EQ(flag(file, "log"), true);
    EXPECT_EQ(flag(file, "denyTabFront"), true);
    EXPECT_TRUE(isOn(u"Log")) << "the rows show what was read";
}

// Rules that cannot be read this time may well be good: they stay, and the switch says so.
TEST_F(SettingsTest, SwitchGoesBackWhenTheFileCannotBeRead) {
    device.put(File::globalRules, "<dict><key>log</key><true/></dict>");
    const std::string before = device.bytes(File::globalRules);
    open();
    {
        const Unreadable rules(device.path(File::globalRules));
        for (const QStringView title : {u"Log", u"Deny Tab In Front"}) toggle(title);
    }
    EXPECT_TRUE(isOn(u"Log"));
    EXPECT_FALSE(isOn(u"Deny Tab In Front"));
    EXPECT_TRUE(device.posts().empty());
    EXPECT_EQ(device.alert(), nullptr);
    EXPECT_EQ(device.bytes(File::globalRules), before);
}

TEST_F(SettingsTest, DeletesEverythingOnlyWhenConfirmed) {
    const std::string rules = "<dict><key>com.apple.gamed</key><dict/><key>log</key><true/></dict>";
    for (const File file : {File::appRules, File::globalRules, File::guiSettings}) device.put(file, rules);
    open();
    for (const bool isConfirmed : {false, true}) {
        device.tapRow(u"Delete All Rules and Settings");
        EXPECT_TRUE(device.alert()->isDestructive(1));
        device.answer(isConfirmed ? 1 : 0);
        EXPECT_EQ(device.posts().size(), isConfirmed ? 1U : 0U);
        EXPECT_EQ(isOn(u"Log"), !isConfirmed);
        EXPECT_TRUE(isOn(u"Enabled"));
        for (const File file : {File::appRules, File::globalRules})
            EXPECT_EQ(device.plist(file)->contains("com.apple.gamed"), !isConfirmed);
    }
    EXPECT_EQ(device.posts()[0].appRules->size(), 1U);
    EXPECT_EQ(device.posts()[0].globalRules->size(), 1U);
    EXPECT_TRUE(device.plist(File::guiSettings)->contains("log"));
}

}  // namespace
