// The settings screen: what its switches show, what they leave in the files, and what the engine is told when.
#include <gtest/gtest.h>

#include <QStringList>

#include "platform/system/FixedNetwork.h"
#include "platform/ui/controls/Switch.h"
#include "screens/ScreenHost.h"
#include "screens/settings/SettingsRoutes.h"
#include "screens/settings/VxmSettingsViewController.h"
#include "support/AnotherPerson.h"
#include "views/VxmRuleCell.h"

namespace {

namespace fs = std::filesystem;
using store::File;

constexpr platform::IndexPath enabledRow{0, 0};
constexpr platform::IndexPath documentationRow{1, 0};
constexpr platform::IndexPath logRow{4, 0};
constexpr platform::IndexPath importExportRow{6, 0};
constexpr platform::IndexPath deleteRow{7, 0};

constexpr struct {
    int section;
    const char* key;
} globalSwitches[] = {{2, "blockNonWiFi"}, {3, "respectGlobal"}, {4, "log"}, {5, "denyTabFront"}};

class SettingsTest : public testing::Test, public screens::SettingsRoutes {
protected:
    void open() { host.show<screens::VxmSettingsViewController>(*this, network); }

    void openDocumentation(platform::ViewController&) override { opened << QStringLiteral("documentation"); }
    void openLog(platform::ViewController&) override { opened << QStringLiteral("log"); }
    void openImportExport(platform::ViewController&) override { opened << QStringLiteral("import/export"); }

    platform::Switch* switchAt(int section) const {
        return qobject_cast<platform::Switch*>(host.cell({section, 0})->accessoryView());
    }
    void toggle(int section) const {
        QTest::mouseClick(switchAt(section), Qt::LeftButton);
        QApplication::processEvents();
    }
    static std::optional<bool> flag(const std::optional<store::Dictionary>& file, const char* key) {
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
    const bool expected[] = {false, false, true, false, true, false};
    for (const int section : {0, 2, 3, 4, 5}) EXPECT_EQ(switchAt(section)->isOn(), expected[section]) << section;
    for (const auto row : {documentationRow, importExportRow, deleteRow}) {
        EXPECT_EQ(host.cell(row)->accessoryView(), nullptr);
    }
}

TEST_F(SettingsTest, RowsKeepTheirLookWhenTheirCellsAreUsedAgain) {
    open();
    host.window->resize(320, 140);  // few rows in sight: cells go round
    for (const int section : {0, 1, 2, 3, 4, 5, 6, 7, 6, 5, 4, 3, 2, 1, 0}) {
        const auto* cell = host.cell({section, 0});
        const bool isGrey = section == 1 || section == 4 || section == 6;
        const bool leadsOn = section == 1 || section == 6;
        EXPECT_EQ(cell->selectionStyle() == platform::TableViewCell::SelectionStyle::gray, isGrey) << section;
        EXPECT_EQ(cell->accessory() == platform::TableViewCell::Accessory::disclosureIndicator, leadsOn) << section;
        EXPECT_EQ(cell->accessoryView() != nullptr, !leadsOn && section != 7) << section;
    }
}

TEST_F(SettingsTest, GlobalSwitchWritesItsKeyAndThenPosts) {
    for (const bool hasFile : {false, true}) {
        for (const auto& [section, key] : globalSwitches) {
            SettingsTest::host.posts.clear();
            std::filesystem::remove(host.store.path(File::globalRules));
            if (hasFile) host.put(File::globalRules, "<dict><key>own</key><string>kept</string></dict>");
            open();
            for (const bool on : {true, false}) {
                toggle(section);
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
    toggle(5);
    const auto file = host.store.read(File::globalRules);
    EXPECT_EQ(file->find("globalDeny")->array()->size(), 1U);
    EXPECT_EQ(flag(file, "log"), true);
    EXPECT_EQ(flag(file, "denyTabFront"), true);
    EXPECT_TRUE(switchAt(logRow.section)->isOn()) << "the rows show what was read";
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
        for (const int section : {logRow.section, 5}) toggle(section);
    }
    EXPECT_TRUE(switchAt(logRow.section)->isOn());
    EXPECT_FALSE(switchAt(5)->isOn());
    EXPECT_TRUE(host.posts.empty());
    EXPECT_EQ(host.alert(), nullptr);
    fs::permissions(file, fs::perms(0644));
    EXPECT_EQ(ScreenHost::bytes(file), before);
}

TEST_F(SettingsTest, EnabledSwitchKeepsTheMarkerAndThenPosts) {
    open();
    for (const bool disabled : {true, false}) {
        toggle(enabledRow.section);
        EXPECT_EQ(host.posts.back().isDisabled, disabled);
        EXPECT_EQ(host.posts.back().name, store::reloadBoth);
        EXPECT_EQ(host.store.isDisabled(), disabled);
    }
    EXPECT_EQ(host.posts.size(), 2U);
    EXPECT_FALSE(host.store.exists(File::globalRules));
}

TEST_F(SettingsTest, LogSwitchedOnAsksToReadBetweenWriteAndPost) {
    open();
    toggle(logRow.section);
    ASSERT_TRUE(host.alert());
    EXPECT_EQ(host.alert()->title(), u"Please Read");
    EXPECT_EQ(host.alert()->numberOfButtons(), 1);
    ASSERT_EQ(host.posts.size(), 1U);
    EXPECT_TRUE(host.posts[0].isAlertShown);
    EXPECT_EQ(flag(host.posts[0].globalRules, "log"), true);
    host.answer(0);
    toggle(logRow.section);
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
        EXPECT_TRUE(switchAt(logRow.section)->isOn());
        host.tapRow(deleteRow);
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
        EXPECT_EQ(switchAt(logRow.section)->isOn(), !isDeleted);
        EXPECT_TRUE(switchAt(enabledRow.section)->isOn());
    }
}

TEST_F(SettingsTest, RowsLeadToTheirScreens) {
    open();
    for (int section = 0; section < 7; ++section) host.tapRow({section, 0});
    EXPECT_EQ(opened,
              (QStringList{QStringLiteral("documentation"), QStringLiteral("log"), QStringLiteral("import/export")}));
    EXPECT_TRUE(host.posts.empty());
}

TEST_F(SettingsTest, DocumentationNeedsTheInternet) {
    platform::FixedNetwork none(platform::FixedNetwork::Kind::none);
    host.show<screens::VxmSettingsViewController>(static_cast<screens::SettingsRoutes&>(*this), none);
    host.tapRow(documentationRow);
    EXPECT_TRUE(opened.isEmpty());
    ASSERT_TRUE(host.alert());
    EXPECT_EQ(host.alert()->title(), u"No Internet Connection");
    EXPECT_EQ(host.alert()->button(0)->text(), u"Ok");
}

}  // namespace
