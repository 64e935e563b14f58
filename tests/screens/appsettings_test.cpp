// One app's settings: every state and transition of the switches, and what each leaves in the file.
#include <gtest/gtest.h>

#include "platform/ui/controls/Switch.h"
#include "screens/Documents.h"
#include "screens/apps/VxmAppViewController.h"
#include "store/Schema.h"
#include "support/TestDevice.h"

namespace {

using store::File;

constexpr const char* identifier = "org.example.Mail";
constexpr QStringView allow = u"Allow All Connections";
constexpr QStringView deny = u"Deny All Connections";
constexpr QStringView still = u"Still Apply Detailed Rules";
constexpr QStringView wiFi = u"Block If NOT On WiFi";

std::string rulesWith(const std::string& record) {
    std::string rules = "<dict><key>";
    return rules.append(identifier).append("</key><dict>").append(record).append("</dict></dict>");
}

struct AppSettingsTest : testing::Test {
    // Opens the app's screen; its record is given as the inside of a dictionary.
    void open(const std::string& record) {
        device.install(identifier, "Mail");
        device.put(File::appRules, rulesWith(record));
        device.launch();
        device.tapRow(u"Mail");
        ASSERT_TRUE(screen());
    }

    screens::VxmAppViewController* screen() { return qobject_cast<screens::VxmAppViewController*>(device.screen()); }

    // The switches as text: "on", "off", with "-" when they cannot be used.
    std::string states() {
        std::string text;
        for (const QStringView title : {allow, deny, still, wiFi}) {
            const auto* control = device.cell(title)->accessorySwitch();
            text += std::string(control->isOn() ? "on" : "off") + (control->isEnabled() ? " " : "- ");
        }
        return text + (screen()->enabledSwitch()->isOn() ? "| on" : "| off");
    }

    store::Dictionary record() { return *device.plist(File::appRules)->find(identifier)->dictionary(); }
    std::string mode() { return record().find("allowEverything")->string().value_or("none"); }
    bool flag(std::string_view key) { return record().find(key)->boolean().value(); }
    void toggle(QStringView title) { device.tapRow(title, 290); }

    TestDevice device;
};

TEST_F(AppSettingsTest, FirstAppearanceShowsTheRecordAndWritesIt) {
    const std::tuple<const char*, const char*, bool> cases[] = {
        // allow, deny, still, Wi-Fi | enabled
        {"", "off off off- off | on", false},
        {"<key>allowEverything</key><string>1</string><key>stillUseRules</key><true/>", "on off- on off | on", true},
        {"<key>allowEverything</key><string>2</string>", "off- on off off | on", false},
        {"<key>allowEverything</key><string>3</string><key>stillUseRules</key><true/>", "off off off- off | on", false},
        {"<key>enabled</key><false/><key>blockSpecificWiFi</key><true/>", "off off off- on | off", false},
        {"<key>enabled</key><integer>1</integer><key>blockSpecificWiFi</key><false/>", "off off off- off | off", false},
        {"<key>allowEverything</key><string>2</string><key>stillUseRules</key><integer>0</integer>",
         "off- on on off | on", true},
    };
    for (const auto& [given, shown, stillUseRules] : cases) {
        open(given);
        EXPECT_EQ(states(), shown) << given;
        EXPECT_EQ(flag("stillUseRules"), stillUseRules) << given;
        EXPECT_EQ(device.plist(File::appRules)->find("150")->boolean(), true);
        EXPECT_TRUE(device.posts().empty());
    }
}

TEST_F(AppSettingsTest, BlanketModesFollowTheirStates) {
    open("<key>deny</key><array><string>odd</string></array><key>own</key><integer>7</integer>");
    const std::tuple<QStringView, const char*, const char*, bool> steps[] = {
        {allow, "on off- off off | on", "1", false},
        {still, "on off- on off | on", "1", true},
        {deny, "on off- on off | on", "1", true},  // it cannot be used now
        {allow, "off off off- off | on", "", false},
        {still, "off off off- off | on", "", false},  // it cannot be used now
        {deny, "off- on off off | on", "2", false},
        {still, "off- on on off | on", "2", true},
        {allow, "off- on on off | on", "2", true},  // it cannot be used now
        {deny, "off off off- off | on", "", false},
    };
    for (const auto& [tapped, shown, blanketMode, stillUseRules] : steps) {
        toggle(tapped);
        EXPECT_EQ(states(), shown);
        EXPECT_EQ(mode(), blanketMode);
        EXPECT_EQ(flag("stillUseRules"), stillUseRules);
    }
    EXPECT_EQ(record().find("own")->integer(), 7);
    EXPECT_EQ(record().find("deny")->array()->size(), 1U);
    EXPECT_TRUE(device.posts().empty());
}

TEST_F(AppSettingsTest, EnabledSwitchPostsHookLateOnlyWhenSwitchedOn) {
    open("");
    EXPECT_EQ(QRectF(screen()->enabledSwitch()->geometry()).center(), QPointF(262, 20));
    device.tap(262, 20);
    EXPECT_FALSE(flag("enabled"));
    EXPECT_TRUE(device.posts().empty());
    EXPECT_EQ(states(), "off off off- off | off");
    device.tap(262, 20);
    EXPECT_TRUE(flag("enabled"));
    ASSERT_EQ(device.posts().size(), 1U);
    const TestDevice::Post& post = device.posts()[0];
    EXPECT_EQ(post.name, store::hookLate);
    EXPECT_EQ(post.appRules->find(identifier)->dictionary()->find("enabled")->boolean(), true) << "it can be read";
}

TEST_F(AppSettingsTest, SwitchesWriteTheKeysOfTheContract) {
    const auto switches = documents::switches(QStringLiteral("**App rules.**"));
    ASSERT_EQ(switches.size(), store::keys::appSwitches.size());
    for (const auto& [key, title] : switches) {
        SCOPED_TRACE(key);
        open("<key>allowEverything</key><string>2</string>");
        const store::Dictionary before = record();
        for (const bool on : {true, false}) {
            toggle(title);
            EXPECT_EQ(flag(key), on);
            EXPECT_EQ(record().size(), before.size() + !before.contains(key));
        }
    }
}

TEST_F(AppSettingsTest, ChangesStartFromTheFileAsItIsNow) {
    open("");
    device.put(File::appRules, "<dict><key>other</key><dict/><key>" + std::string(identifier) +
                                   "</key><dict><key>allow</key><array><string>a</string></array></dict></dict>");
    toggle(wiFi);
    EXPECT_TRUE(device.plist(File::appRules)->contains("other"));
    EXPECT_EQ(record().find("allow")->array()->size(), 1U);
    std::filesystem::remove(device.path(File::appRules));
    toggle(allow);
    EXPECT_EQ(states(), "on off- off on | on");
    EXPECT_FALSE(std::filesystem::exists(device.path(File::appRules)));
}

TEST_F(AppSettingsTest, ReturningFromARuleListReadsAndWritesNothing) {
    open("");
    device.tapRow(u"Always Allow Rules");
    device.put(File::appRules, rulesWith("<key>allowEverything</key><string>1</string>"));
    const std::string changed = device.bytes(File::appRules);
    device.tap(20, 20);
    ASSERT_TRUE(screen());
    EXPECT_EQ(states(), "off off off- off | on");
    EXPECT_EQ(device.bytes(File::appRules), changed);
}

}  // namespace
