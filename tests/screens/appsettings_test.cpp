// One app's settings: every state and transition of the switches, and what each leaves in the file.
#include <gtest/gtest.h>

#include "platform/ui/controls/Switch.h"
#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"
#include "screens/apps/VxmAppViewController.h"
#include "store/Schema.h"
#include "support/TestDevice.h"

namespace {

using store::File;

constexpr const char* identifier = "org.example.Mail";

// A device with one app, opened; its record given as the inside of a dictionary, or none.
class AppSettingsTest : public testing::Test {
protected:
    void open(const std::string& record) {
        device.install(identifier, "Mail");
        device.put(File::appRules,
                   std::string("<dict><key>") + identifier + "</key><dict>" + record + "</dict></dict>");
        device.launch();
        device.tapRow(1, 0);
        ASSERT_TRUE(screen());
    }

    screens::VxmAppViewController* screen() { return qobject_cast<screens::VxmAppViewController*>(device.screen()); }

    platform::Switch* switchAt(int section, int row) {
        auto* cell = device.table()->cellForRow({section, row});
        return cell ? qobject_cast<platform::Switch*>(cell->accessoryView()) : nullptr;
    }

    // The switches as text: "on", "off", with "-" when they cannot be used.
    std::string states() {
        std::string text;
        for (const auto& [section, row] : {std::pair{0, 0}, std::pair{0, 1}, std::pair{0, 2}, std::pair{1, 0}}) {
            const auto* control = switchAt(section, row);
            text += std::string(control->isOn() ? "on" : "off") + (control->isEnabled() ? " " : "- ");
        }
        return text + (screen()->enabledSwitch()->isOn() ? "| on" : "| off");
    }

    store::Dictionary record() { return *device.plist(File::appRules)->find(identifier)->dictionary(); }
    std::string mode() { return record().find("allowEverything")->string().value_or("none"); }
    bool flag(std::string_view key) { return record().find(key)->boolean().value(); }
    void toggle(int section, int row) { device.tapRow(section, row, 290); }

    TestDevice device;
};

TEST_F(AppSettingsTest, FirstAppearanceShowsTheRecordAndWritesIt) {
    const struct {
        const char* record;
        const char* states;  // allow, deny, still, Wi-Fi | enabled
        bool stillUseRules;
    } cases[] = {
        {"", "off off off- off | on", false},
        {"<key>allowEverything</key><string></string>", "off off off- off | on", false},
        {"<key>allowEverything</key><string>1</string><key>stillUseRules</key><true/>", "on off- on off | on", true},
        {"<key>allowEverything</key><string>2</string>", "off- on off off | on", false},
        {"<key>allowEverything</key><string>3</string><key>stillUseRules</key><true/>", "off off off- off | on", false},
        {"<key>allowEverything</key><integer>1</integer>", "off off off- off | on", false},
        {"<key>enabled</key><false/><key>blockSpecificWiFi</key><true/>", "off off off- on | off", false},
        {"<key>enabled</key><integer>1</integer><key>blockSpecificWiFi</key><false/>", "off off off- off | off", false},
        {"<key>enabled</key><string>x</string><key>blockSpecificWiFi</key><string>x</string>", "off off off- on | off",
         false},
        {"<key>allowEverything</key><string>2</string><key>stillUseRules</key><integer>0</integer>",
         "off- on on off | on", true},
    };
    for (const auto& each : cases) {
        TestDevice fresh;
        fresh.install(identifier, "Mail");
        fresh.put(File::appRules,
                  std::string("<dict><key>") + identifier + "</key><dict>" + each.record + "</dict></dict>");
        fresh.launch();
        fresh.tapRow(1, 0);
        std::string shown;
        for (const auto& [section, row] : {std::pair{0, 0}, std::pair{0, 1}, std::pair{0, 2}, std::pair{1, 0}}) {
            auto* control = qobject_cast<platform::Switch*>(fresh.table()->cellForRow({section, row})->accessoryView());
            shown += std::string(control->isOn() ? "on" : "off") + (control->isEnabled() ? " " : "- ");
        }
        shown +=
            qobject_cast<screens::VxmAppViewController*>(fresh.screen())->enabledSwitch()->isOn() ? "| on" : "| off";
        EXPECT_EQ(shown, each.states) << each.record;
        const auto rules = fresh.plist(File::appRules);
        EXPECT_EQ(rules->find(identifier)->dictionary()->find("stillUseRules")->boolean(), each.stillUseRules)
            << each.record;
        EXPECT_EQ(rules->find("150")->boolean(), true);
        EXPECT_TRUE(fresh.posts().empty());
    }
}

TEST_F(AppSettingsTest, SwitchInTheBarIsCentredInItsPlace) {
    open("");
    EXPECT_EQ(QRectF(screen()->enabledSwitch()->geometry()).center(), QPointF(262, 20));
}

TEST_F(AppSettingsTest, BlanketModesFollowTheirStates) {
    open("<key>deny</key><array><string>odd</string></array><key>own</key><integer>7</integer>");
    const struct {
        int row;
        const char* states;
        const char* mode;
        bool stillUseRules;
    } steps[] = {
        {0, "on off- off off | on", "1", false},  // allow all
        {2, "on off- on off | on", "1", true},    // still apply
        {1, "on off- on off | on", "1", true},    // deny cannot be used now
        {0, "off off off- off | on", "", false},  // neither
        {2, "off off off- off | on", "", false},  // still apply cannot be used now
        {1, "off- on off off | on", "2", false},  // deny all
        {2, "off- on on off | on", "2", true},    // still apply
        {0, "off- on on off | on", "2", true},    // allow cannot be used now
        {1, "off off off- off | on", "", false},  // neither
    };
    for (const auto& step : steps) {
        toggle(0, step.row);
        EXPECT_EQ(states(), step.states);
        EXPECT_EQ(mode(), step.mode);
        EXPECT_EQ(flag("stillUseRules"), step.stillUseRules);
    }
    EXPECT_EQ(record().find("own")->integer(), 7);
    EXPECT_EQ(record().find("deny")->array()->size(), 1U);
    EXPECT_TRUE(device.posts().empty());
}

TEST_F(AppSettingsTest, EnabledSwitchPostsHookLateOnlyWhenSwitchedOn) {
    open("");
    device.tap(262, 20);
    EXPECT_FALSE(flag("enabled"));
    EXPECT_TRUE(device.posts().empty());
    EXPECT_EQ(states(), "off off off- off | off");
    device.tap(262, 20);
    EXPECT_TRUE(flag("enabled"));
    ASSERT_EQ(device.posts().size(), 1U);
    EXPECT_EQ(device.posts()[0].name, store::hookLate);
    EXPECT_EQ(device.posts()[0].appRules->find(identifier)->dictionary()->find("enabled")->boolean(), true)
        << "the file is written before the engine hears of it";
}

TEST_F(AppSettingsTest, WiFiSwitchWritesItsKey) {
    open("");
    toggle(1, 0);
    EXPECT_TRUE(flag("blockSpecificWiFi"));
    toggle(1, 0);
    EXPECT_FALSE(flag("blockSpecificWiFi"));
}

TEST_F(AppSettingsTest, ChangesStartFromTheFileAsItIsNow) {
    open("");
    device.put(File::appRules, std::string("<dict><key>other</key><dict/><key>") + identifier +
                                   "</key><dict><key>allow</key><array><string>a</string></array></dict></dict>");
    toggle(1, 0);
    EXPECT_TRUE(device.plist(File::appRules)->contains("other"));
    EXPECT_EQ(record().find("allow")->array()->size(), 1U);
    std::filesystem::remove(device.path(File::appRules));
    toggle(0, 0);
    EXPECT_EQ(states(), "on off- off on | on");
    EXPECT_FALSE(std::filesystem::exists(device.path(File::appRules)));
}

TEST_F(AppSettingsTest, ReturningFromARuleListReadsAndWritesNothing) {
    open("");
    device.tapRow(2, 0);
    const std::string changed =
        "<plist><dict><key>org.example.Mail</key><dict><key>allowEverything</key>"
        "<string>1</string></dict></dict></plist>";
    device.putBytes(device.path(File::appRules), changed);
    device.tap(20, 20);
    ASSERT_TRUE(screen());
    EXPECT_EQ(states(), "off off off- off | on");
    EXPECT_EQ(device.bytes(File::appRules), changed);
}

}  // namespace
