// The settings screen: what its switches show, what they leave in the files, and what the engine is told when.
#include <gtest/gtest.h>

#include <QStringList>

#include "platform/system/FixedNetwork.h"
#include "platform/ui/controls/Switch.h"
#include "screens/Documents.h"
#include "screens/ScreenHost.h"
#include "screens/settings/SettingsRoutes.h"
#include "screens/settings/VxmSettingsViewController.h"
#include "store/Schema.h"
#include "support/AnotherPerson.h"

namespace {

namespace fs = std::filesystem;
using store::File;

const std::vector<documents::Switch>& globalSwitches() {
    static const auto switches = documents::switches(QStringLiteral("**Global rules:**"));
    return switches;
}

class SettingsTest : public testing::Test, public screens::SettingsRoutes {
protected:
    void open() { host.show<screens::VxmSettingsViewController>(*this, network); }

    void openDocumentation(platform::ViewController&) override { opened << QStringLiteral("documentation"); }
    void openLog(platform::ViewController&) override { opened << QStringLiteral("log"); }
    void openImportExport(platform::ViewController&) override { opened << QStringLiteral("import/export"); }

    bool isOn(QStringView title) const { return host.cell(title)->accessorySwitch()->isOn(); }
    void toggle(QStringView title) const {
        QTest::mouseClick(host.cell(title)->accessorySwitch(), Qt::LeftButton);
        QApplication::processEvents();
    }
    static std::optional<bool> flag(const std::optional<store::Dictionary>& file, std::string_view key) {
        const store::Value* value = file ? file->find(key) : nullptr;
        return value ? value->boolean() : std::nullopt;
    }

    platform::FixedNetwork network{platform::FixedNetwork::Kind::wifi};
    ScreenHost host;
    QStringList opened;
};

TEST_F(SettingsTest, ShowsStoredValuesByTheirTruth) {
    host.put(File::globalRules,
             "<dict><key>log</key><integer>1</integer><key>blockNonWiFi</key><true/><key>respectGlobal</key><false/>"
             "<key>denyTabFront</key><array/></dict>");
    ScreenHost::put(host.store.path(File::globalRules).parent_path() / "com.Urmeld.Firewall.disabled", "");
    open();
    EXPECT_FALSE(isOn(u"Enabled"));
    for (const auto& [key, title] : globalSwitches()) EXPECT_EQ(isOn(title), key == "log" || key == "blockNonWiFi");
}

TEST_F(SettingsTest, RowsKeepTheirLookWhenTheirCellsAreUsedAgain) {
    const struct {
        QStringView title;
        bool isGrey, leadsOn, hasSwitch;
    } rows[] = {
        {u"Enabled", false, false, true},
        {u"Documentation", true, true, false},
        {u"Log", true, false, true},
        {u"Import/Export Settings", true, true, false},
        {u"Deny Tab In Front", false, false, true},
        {u"Delete All Rules and Settings", false, false, false},
    };
    open();
    host.window->resize(320, 140);  // few rows in sight: cells go round
    for (int round = 0; round < 2; ++round) {
        for (const auto& [title, isGrey, leadsOn, hasSwitch] : rows) {
            const auto* cell = host.cell(title);
            EXPECT_EQ(cell->selectionStyle() == platform::TableViewCell::SelectionStyle::gray, isGrey);
            EXPECT_EQ(cell->accessory() == platform::TableViewCell::Accessory::disclosureIndicator, leadsOn);
            EXPECT_EQ(cell->accessoryView() != nullptr, hasSwitch) << title.toString().toStdString();
        }
    }
}

TEST_F(SettingsTest, GlobalSwitchWritesItsKeyAndThenPosts) {
    ASSERT_EQ(globalSwitches().size(), store::keys::globalSwitches.size());
    for (const bool hasFile : {false, true}) {
        for (const auto& [key, title] : globalSwitches()) {
            host.posts.clear();
            std::filesystem::remove(host.store.path(File::globalRules));
            if (hasFile) host.put(File::globalRules, "<dict><key>own</key><string>kept</string></dict>");
            open();
            for (const bool on : {true, false}) {
                toggle(title);
                if (host.alert()) host.answer(0);
                ASSERT_EQ(host.posts.size(), on ? 1U : 2U) << key;
                EXPECT_EQ(host.posts.back().name, store::reloadBoth);
                EXPECT_EQ(flag(host.posts.back().globalRules, key), on) << key;
                EXPECT_EQ(flag(host.posts.back().globalRules, "150"), true) << key;
                EXPECT_EQ(host.posts.back().globalRules->size(), hasFile ? 3U : 2U) << key;
            }
        }
    }
    EXPECT_FALSE(host.store.exists(File::appRules));
}

TEST_F(SettingsTest, SwitchKeepsWhatOthersWroteInTheMeantime) {
    open();
    host.put(File::globalRules,
             "<dict><key>globalDeny</key><array><string>x</string></array><key>log</key><true/></dict>");
    toggle(u"Deny Tab In Front");
    const auto file = host.store.read(File::globalRules);
    EXPECT_EQ(file->find("globalDeny")->array()->size(), 1U);
    EXPECT_EQ(flag(file, "log"), true);
    EXPECT_EQ(flag(file, "denyTabFront"), true);
    EXPECT_TRUE(isOn(u"Log")) << "the rows show what was read";
}

// Rules that cannot be read this time may well be good: they stay, and the switch says so.
TEST_F(SettingsTest, SwitchGoesBackWhenTheFileCannotBeRead) {
    host.put(File::globalRules, "<dict><key>log</key><true/></dict>");
    const fs::path file = host.store.path(File::globalRules);
    const std::string before = ScreenHost::bytes(file);
    for (const fs::path& folder : {fs::path(host.directory.path().toStdString()), file.parent_path()})
        fs::permissions(folder, fs::perms::all);
    open();
    fs::permissions(file, fs::perms::none);
    {
        const AnotherPerson somebody;
        for (const QStringView title : {u"Log", u"Deny Tab In Front"}) toggle(title);
    }
    EXPECT_TRUE(isOn(u"Log"));
    EXPECT_FALSE(isOn(u"Deny Tab In Front"));
    EXPECT_TRUE(host.posts.empty());
    EXPECT_EQ(host.alert(), nullptr);
    fs::permissions(file, fs::perms(0644));
    EXPECT_EQ(ScreenHost::bytes(file), before);
}

TEST_F(SettingsTest, EnabledSwitchKeepsTheMarkerAndThenPosts) {
    open();
    for (const bool disabled : {true, false}) {
        toggle(u"Enabled");
        EXPECT_EQ(host.posts.back().isDisabled, disabled);
        EXPECT_EQ(host.posts.back().name, store::reloadBoth);
        EXPECT_EQ(host.store.isDisabled(), disabled);
    }
    EXPECT_EQ(host.posts.size(), 2U);
    EXPECT_FALSE(host.store.exists(File::globalRules));
}

TEST_F(SettingsTest, LogSwitchedOnAsksToReadBetweenWriteAndPost) {
    open();
    toggle(u"Log");
    ASSERT_TRUE(host.alert());
    EXPECT_EQ(host.alert()->title(), u"Please Read");
    EXPECT_EQ(host.alert()->numberOfButtons(), 1);
    ASSERT_EQ(host.posts.size(), 1U);
    EXPECT_TRUE(host.posts[0].isAlertShown);
    EXPECT_EQ(flag(host.posts[0].globalRules, "log"), true);
    host.answer(0);
    toggle(u"Log");
    EXPECT_EQ(host.alert(), nullptr);
    EXPECT_TRUE(opened.isEmpty()) << "a tap on the switch opened the log";
}

TEST_F(SettingsTest, DeletesEverythingOnlyWhenConfirmed) {
    const std::string rules = "<dict><key>org.example.Mail</key><dict/><key>log</key><true/></dict>";
    for (const int button : {0, 1}) {
        host.put(File::appRules, rules);
        host.put(File::globalRules, rules);
        host.put(File::guiSettings, rules);
        host.posts.clear();
        open();
        EXPECT_TRUE(isOn(u"Log"));
        host.tapRow(u"Delete All Rules and Settings");
        ASSERT_TRUE(host.alert());
        EXPECT_EQ(host.alert()->title(), u"Delete all Rules");
        EXPECT_TRUE(host.alert()->isDestructive(1));
        host.answer(button);
        const bool isDeleted = button == 1;
        EXPECT_EQ(host.posts.size(), isDeleted ? 1U : 0U);
        for (const File file : {File::appRules, File::globalRules}) {
            const auto left = host.store.read(file);
            EXPECT_EQ(left->size(), isDeleted ? 1U : 2U);
            EXPECT_EQ(flag(left, "150").has_value(), isDeleted);
        }
        if (isDeleted) {
            EXPECT_EQ(host.posts[0].appRules->size(), 1U);
            EXPECT_EQ(host.posts[0].globalRules->size(), 1U);
        }
        EXPECT_EQ(host.store.read(File::guiSettings)->size(), 2U);
        EXPECT_EQ(isOn(u"Log"), !isDeleted);
        EXPECT_TRUE(isOn(u"Enabled"));
    }
}

TEST_F(SettingsTest, RowsLeadToTheirScreens) {
    open();
    for (const QStringView title :
         {u"Enabled", u"Documentation", u"Deny Tab In Front", u"Log", u"Import/Export Settings"})
        host.tapRow(title);
    EXPECT_EQ(opened,
              (QStringList{QStringLiteral("documentation"), QStringLiteral("log"), QStringLiteral("import/export")}));
    EXPECT_TRUE(host.posts.empty());
}

TEST_F(SettingsTest, DocumentationNeedsTheInternet) {
    platform::FixedNetwork none(platform::FixedNetwork::Kind::none);
    host.show<screens::VxmSettingsViewController>(static_cast<screens::SettingsRoutes&>(*this), none);
    host.tapRow(u"Documentation");
    EXPECT_TRUE(opened.isEmpty());
    ASSERT_TRUE(host.alert());
    EXPECT_EQ(host.alert()->title(), u"No Internet Connection");
    EXPECT_EQ(host.alert()->button(0)->text(), u"Ok");
}

}  // namespace
