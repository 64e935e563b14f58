// The main screen and the add-app chooser, used as a person uses them, on a device with real files.
#include <gtest/gtest.h>

#include "platform/ui/controls/ImageButton.h"
#include "screens/apps/VxmMainViewController.h"
#include "store/Schema.h"
#include "support/Rules.h"
#include "support/TestDevice.h"

namespace fs = std::filesystem;

namespace {

using store::File;
using Keys = std::vector<std::string>;

Keys keysOf(const std::optional<store::Dictionary>& dictionary) {
    Keys keys;
    if (!dictionary) return keys;
    for (const auto& [key, value] : *dictionary) keys.push_back(key);
    return keys;
}

struct MainScreenTest : testing::Test {
    // A device with these apps of org.example, and with a record for each of these identifiers.
    void launch(const Keys& apps, const Keys& records) {
        for (const std::string& app : apps) device.install("org.example." + app, app);
        put(records);
        device.launch();
    }
    void put(const Keys& records) {
        std::string entries;
        for (const std::string& each : records)
            entries += "<key>" + each + "</key><dict><key>custom</key><string>kept</string></dict>";
        device.put(File::appRules, "<dict>" + entries + "</dict>");
    }
    Keys records() const { return keysOf(device.plist(File::appRules)); }
    // Records go when the list without them has been painted.
    bool recordsBecome(const Keys& keys) {
        return QTest::qWaitFor([&] { return records() == keys; }, 2000);
    }
    void tapRightButton() { device.tap(292, 20); }  // "Add", or "Done" in the chooser
    void search(const char* text) {
        device.tap(120, 59);
        device.type(QString::fromUtf8(text));
    }
    screens::VxmMainViewController* main() const {
        return qobject_cast<screens::VxmMainViewController*>(device.screen());
    }

    TestDevice device;
};

TEST_F(MainScreenTest, FirstLaunchCreatesTheAppRulesFile) {
    device.launch();
    EXPECT_EQ(records(), Keys{"150"});
    EXPECT_EQ(device.rows(1), 0);
    for (const File other : {File::globalRules, File::guiSettings}) EXPECT_FALSE(fs::exists(device.path(other)));
    EXPECT_EQ(device.alert(), nullptr);
    device.terminate();
    ASSERT_EQ(device.posts().size(), 1U);
    EXPECT_EQ(device.posts()[0].name, store::reloadBoth);
}

TEST_F(MainScreenTest, OpensAScreenOnceHoweverOftenItIsAsked) {
    device.launch();
    auto& screen = *main();
    platform::ImageButton sender;
    for (int each = 0; each < 2; ++each) screen.presentSettings(sender);
    screen.add(sender);
    EXPECT_EQ(device.navigation()->count(), 2);
    EXPECT_EQ(screen.presentedViewController(), nullptr);
}

TEST_F(MainScreenTest, ListsInstalledAppsByNameAndPrunesTheOthers) {
    launch({"Mail", "maps"},
           {"org.example.maps", "org.example.Mail", "org.example.Gone", "ORG.EXAMPLE.MAIL", "com.apple.gamed"});
    EXPECT_EQ(device.titles(1), list({"GameCenterDaemon", "Mail", "maps"}));
    EXPECT_TRUE(recordsBecome({"150", "com.apple.gamed", "org.example.Mail", "org.example.maps"}));
    device.uninstall("org.example.Mail");
    for (int each = 0; each < 2; ++each) tapRightButton();
    EXPECT_EQ(device.titles(1), list({"GameCenterDaemon", "maps"})) << "at the next appearance";
    EXPECT_TRUE(recordsBecome({"150", "com.apple.gamed", "org.example.maps"}));
    EXPECT_TRUE(device.posts().empty());
}

TEST_F(MainScreenTest, AppInstalledBeforeTheRecordsGoKeepsItsOwn) {
    launch({}, {"org.example.Gone", "org.example.Mail"});
    ASSERT_EQ(records(), (Keys{"org.example.Gone", "org.example.Mail"}));
    device.install("org.example.Mail", "Mail");
    EXPECT_TRUE(recordsBecome({"150", "org.example.Mail"}));
}

// At some scales an icon of 29 points is a part of a point wider: whole pixels.
TEST_F(MainScreenTest, RowsWithoutAnIconStandInLineAtEveryScale) {
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 2.625, 3.0}) {
        device.applications().setScale(scale);
        launch({"Mail"}, {"org.example.Mail"});
        ASSERT_EQ(device.rows(1), 1);
        const platform::TableViewCell* row = device.table()->cellForRow({1, 0});
        EXPECT_EQ(row->indentationLevel() * row->indentationWidth(), 0) << "at " << scale;
    }
}

TEST_F(MainScreenTest, ChosenAppGetsAnEmptyRecord) {
    launch({"Mail", "Maps"}, {"org.example.Mail"});
    for (int each = 0; each < 2; ++each) tapRightButton();
    ASSERT_TRUE(main());
    EXPECT_EQ(records(), Keys{"org.example.Mail"}) << "closing the chooser writes nothing";
    tapRightButton();
    EXPECT_EQ(device.titles(0), list({"GameCenterDaemon", "Maps"}));
    search("aps");
    device.tapRow(0, 0);
    ASSERT_TRUE(main());
    EXPECT_EQ(device.titles(1), list({"Mail", "Maps"}));

    const auto rules = device.plist(File::appRules);
    const auto record = rules->find("org.example.Maps")->dictionary();
    EXPECT_EQ(keysOf(record), (Keys{"allow", "allowEverything", "deny"}));
    EXPECT_EQ(keysOf(rules->find("org.example.Mail")->dictionary()), Keys{"custom"});
    EXPECT_TRUE(device.posts().empty());
}

TEST_F(MainScreenTest, ChooserHidesConfiguredAppsWhateverTheirLetterCase) {
    device.install("com.apple.springboard", "Home");
    device.install("com.saurik.Cydia", "Store");
    launch({"Mail"}, {"com.apple.gamed"});
    put({"com.apple.gamed", "ORG.example.MAIL"});
    tapRightButton();
    EXPECT_EQ(device.rows(0), 0);
}

TEST_F(MainScreenTest, DeletesFromTheListAndFromASearchByName) {
    launch({"Mail", "Maps", "Phone", "Webmail"},
           {"org.example.Mail", "org.example.Maps", "org.example.Phone", "org.example.Webmail"});
    device.swipeToDelete(1, 2);
    EXPECT_EQ(device.titles(1), list({"Mail", "Maps", "Webmail"}));
    EXPECT_EQ(records(), (Keys{"org.example.Mail", "org.example.Maps", "org.example.Webmail"})) << "no marker";

    const platform::TableView* whole = device.table();
    search("MAIL");
    EXPECT_EQ(device.titles(0), list({"Mail", "Webmail"}));
    device.swipeToDelete(0, 0);
    EXPECT_EQ(device.titles(0), list({"Webmail"}));
    EXPECT_EQ(records(), (Keys{"org.example.Maps", "org.example.Webmail"}));
    device.tap(120, 59);
    device.key(Qt::Key_Escape);
    EXPECT_EQ(device.table(), whole);
    EXPECT_EQ(device.titles(1), list({"Maps", "Webmail"}));
    device.swipeToDelete(0, 0);
    EXPECT_EQ(records(), (Keys{"org.example.Maps", "org.example.Webmail"})) << "a global row is no app";
    EXPECT_TRUE(device.posts().empty());
}

TEST_F(MainScreenTest, TableHasBandsOnlyBetweenSections) {
    launch({"Mail"}, {"org.example.Mail"});
    const QRect firstApp = device.table()->rectForRow({1, 0});
    EXPECT_EQ(firstApp.top() - device.table()->rectForRow({0, 1}).bottom() - 1, 3);
    EXPECT_EQ(firstApp.height(), 50);
    EXPECT_EQ(device.table()->contentHeight(), 38 + 2 * 50 + 3 + 50);
    EXPECT_EQ(device.table()->cellForRow({1, 0})->accessory(), platform::TableViewCell::Accessory::disclosureIndicator);
}

}  // namespace
