// The main screen and the add-app chooser, used as a person uses them, on a device with real files.
#include <gtest/gtest.h>

#include <QTest>

#include "platform/system/DesktopApplicationList.h"
#include "platform/ui/alert/AlertView.h"
#include "platform/ui/controls/ImageButton.h"
#include "platform/ui/navigation/NavigationController.h"
#include "platform/ui/table/TableView.h"
#include "platform/ui/table/TableViewCell.h"
#include "screens/apps/VxmAppChooserControllerViewController.h"
#include "screens/apps/VxmMainViewController.h"
#include "store/Schema.h"
#include "support/TestDevice.h"

namespace fs = std::filesystem;

namespace {

using store::File;

constexpr const char* mailRecord =
    "<dict><key>150</key><true/><key>org.example.Mail</key><dict><key>custom</key><string>kept</string></dict></dict>";

std::vector<std::string> keysOf(const std::optional<store::Dictionary>& dictionary) {
    std::vector<std::string> keys;
    if (dictionary) {
        for (const auto& [key, value] : *dictionary) keys.push_back(key);
    }
    return keys;
}

using Keys = std::vector<std::string>;

QStringList titles(TestDevice& device, int section) {
    QStringList result;
    for (int row = 0; row < device.rows(section); ++row) result.append(device.rowTexts(section, row).value(0));
    return result;
}

void openChooser(TestDevice& device) {
    device.tap(292, 20);
}

TEST(MainScreenTest, FirstLaunchCreatesTheAppRulesFile) {
    TestDevice device;
    device.launch();
    EXPECT_EQ(keysOf(device.plist(File::appRules)), Keys{"150"});
    EXPECT_EQ(device.plist(File::appRules)->find("150")->boolean(), true);
    EXPECT_EQ(titles(device, 0), QStringList({QStringLiteral("Global Allow"), QStringLiteral("Global Deny")}));
    EXPECT_EQ(device.rows(1), 0);
    EXPECT_FALSE(fs::exists(device.path(File::globalRules)));
    EXPECT_FALSE(fs::exists(device.path(File::guiSettings)));
    EXPECT_EQ(device.alert(), nullptr);
    device.terminate();
    ASSERT_EQ(device.posts().size(), 1U);
    EXPECT_EQ(device.posts()[0].name, store::reloadBoth);
}

TEST(MainScreenTest, OpensAScreenOnceHoweverOftenItIsAsked) {
    TestDevice device;
    device.launch();
    auto& main = *qobject_cast<screens::VxmMainViewController*>(device.screen());
    platform::ImageButton sender;
    main.presentSettings(sender);
    main.presentSettings(sender);
    main.add(sender);
    EXPECT_EQ(device.navigation()->count(), 2);
    EXPECT_EQ(main.presentedViewController(), nullptr);
}

TEST(MainScreenTest, UnreadableFileIsLeftAloneAndListsNothing) {
    const std::string contents[] = {"", "no property list", "<plist><array/></plist>", std::string("\0\1\2", 3)};
    for (const std::string& content : contents) {
        TestDevice device;
        device.install("org.example.Mail", "Mail");
        device.putBytes(device.path(File::appRules), content);
        device.launch();
        EXPECT_EQ(device.rows(1), 0);
        openChooser(device);
        device.tapRow(0, 0);
        EXPECT_EQ(device.bytes(File::appRules), content);
        EXPECT_EQ(device.rows(1), 0);
    }
}

// Records go when the list without them has been painted.
bool recordsBecome(TestDevice& device, const Keys& keys) {
    return QTest::qWaitFor([&] { return keysOf(device.plist(File::appRules)) == keys; }, 2000);
}

TEST(MainScreenTest, ListsInstalledAppsByNameAndPrunesTheOthers) {
    TestDevice device;
    device.install("org.example.Mail", "Mail");
    device.install("org.example.Maps", "maps");
    device.put(File::appRules,
               "<dict><key>org.example.Maps</key><dict/><key>org.example.Mail</key><dict/>"
               "<key>org.example.Gone</key><dict/><key>ORG.EXAMPLE.MAIL</key><dict/>"
               "<key>com.apple.gamed</key><dict/></dict>");
    device.launch();
    EXPECT_EQ(titles(device, 1),
              QStringList({QStringLiteral("GameCenterDaemon"), QStringLiteral("Mail"), QStringLiteral("maps")}));
    EXPECT_EQ(device.rowTexts(1, 1).value(1), QStringLiteral("org.example.Mail"));
    EXPECT_TRUE(recordsBecome(device, {"150", "com.apple.gamed", "org.example.Mail", "org.example.Maps"}));
    EXPECT_TRUE(device.posts().empty());
}

TEST(MainScreenTest, UninstalledAppLosesItsRecordAtTheNextAppearance) {
    TestDevice device;
    device.install("org.example.Mail", "Mail");
    device.put(File::appRules, mailRecord);
    device.launch();
    ASSERT_EQ(device.rows(1), 1);
    device.uninstall("org.example.Mail");
    openChooser(device);
    device.tap(292, 20);
    EXPECT_EQ(device.rows(1), 0);
    EXPECT_TRUE(recordsBecome(device, {"150"}));
}

TEST(MainScreenTest, AppInstalledBeforeTheRecordsGoKeepsItsOwn) {
    TestDevice device;
    device.put(File::appRules, "<dict><key>org.example.Gone</key><dict/><key>org.example.Mail</key><dict/></dict>");
    device.launch();
    ASSERT_EQ(keysOf(device.plist(File::appRules)), (Keys{"org.example.Gone", "org.example.Mail"}));
    device.install("org.example.Mail", "Mail");
    EXPECT_TRUE(recordsBecome(device, {"150", "org.example.Mail"}));
}

// At some scales an icon of 29 points is a part of a point wider: whole pixels.
TEST(MainScreenTest, RowsWithoutAnIconStandInLineAtEveryScale) {
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 2.625, 3.0}) {
        TestDevice device;
        device.applications().setScale(scale);
        device.install("org.example.Mail", "Mail");
        device.put(File::appRules, mailRecord);
        device.launch();
        ASSERT_EQ(device.rows(1), 1);
        const platform::TableViewCell* row = device.table()->cellForRow({1, 0});
        EXPECT_EQ(row->indentationLevel() * row->indentationWidth(), 0) << "at " << scale;
    }
}

TEST(MainScreenTest, LoadsItsListASecondTimeAfterAppearing) {
    TestDevice device;
    device.install("org.example.Mail", "Mail");
    device.launch();
    device.put(File::appRules, mailRecord);
    EXPECT_EQ(device.rows(1), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return device.rows(1) == 1; }, 2000));
}

TEST(MainScreenTest, ChosenAppGetsAnEmptyRecord) {
    TestDevice device;
    device.install("org.example.Mail", "Mail");
    device.install("org.example.Maps", "Maps");
    device.put(File::appRules, mailRecord);
    device.launch();
    openChooser(device);
    ASSERT_TRUE(qobject_cast<screens::VxmAppChooserControllerViewController*>(device.screen()));
    EXPECT_EQ(titles(device, 0), QStringList({QStringLiteral("GameCenterDaemon"), QStringLiteral("Maps")}));
    device.tapRow(0, 1);
    ASSERT_TRUE(qobject_cast<screens::VxmMainViewController*>(device.screen()));
    EXPECT_EQ(titles(device, 1), QStringList({QStringLiteral("Mail"), QStringLiteral("Maps")}));

    const auto rules = device.plist(File::appRules);
    const auto record = rules->find("org.example.Maps")->dictionary();
    EXPECT_EQ(keysOf(record), (Keys{"allow", "allowEverything", "deny"}));
    EXPECT_TRUE(record->find("allow")->array()->empty());
    EXPECT_TRUE(record->find("deny")->array()->empty());
    EXPECT_EQ(record->find("allowEverything")->string(), "");
    EXPECT_EQ(rules->find("org.example.Mail")->dictionary()->find("custom")->string(), "kept");
    EXPECT_TRUE(device.posts().empty());
}

TEST(MainScreenTest, ChoosingWithoutAFileWritesNothing) {
    TestDevice device;
    device.install("org.example.Mail", "Mail");
    device.launch();
    fs::remove(device.path(File::appRules));
    openChooser(device);
    EXPECT_EQ(device.rows(0), 2) << "without a file every app is offered";
    device.tapRow(0, 1);
    EXPECT_FALSE(fs::exists(device.path(File::appRules)));
    EXPECT_EQ(device.rows(1), 0);
}

TEST(MainScreenTest, ChooserHidesConfiguredAppsWhateverTheirLetterCase) {
    TestDevice device;
    device.install("org.example.Mail", "Mail");
    device.install("com.apple.springboard", "Home");
    device.install("com.saurik.Cydia", "Store");
    device.launch();
    device.put(File::appRules, "<dict><key>com.apple.gamed</key><dict/><key>ORG.example.MAIL</key><dict/></dict>");
    openChooser(device);
    EXPECT_EQ(device.rows(0), 0);
}

TEST(MainScreenTest, ClosingTheChooserWritesNothing) {
    TestDevice device;
    device.install("org.example.Mail", "Mail");
    device.put(File::appRules, mailRecord);
    device.launch();
    openChooser(device);
    const std::string before = device.bytes(File::appRules);
    device.drag(280, 100, 100, 100);
    device.tap(292, 20);
    EXPECT_TRUE(qobject_cast<screens::VxmMainViewController*>(device.screen()));
    EXPECT_EQ(device.bytes(File::appRules), before);
}

TEST(MainScreenTest, SwipeDeletesAnAppWithoutTouchingTheMarker) {
    TestDevice device;
    device.install("org.example.Mail", "Mail");
    device.install("org.example.Maps", "Maps");
    device.put(File::appRules, "<dict><key>org.example.Mail</key><dict/><key>org.example.Maps</key><dict/></dict>");
    device.launch();
    device.swipeToDelete(1, 0);
    EXPECT_EQ(titles(device, 1), QStringList({QStringLiteral("Maps")}));
    EXPECT_EQ(keysOf(device.plist(File::appRules)), Keys{"org.example.Maps"});
    device.swipeToDelete(0, 0);
    EXPECT_EQ(device.rows(0), 2) << "the global rows stay";
    EXPECT_TRUE(device.posts().empty());
}

TEST(MainScreenTest, SearchFindsByNameAndDeletesFromBothLists) {
    TestDevice device;
    for (const auto& [identifier, name] :
         {std::pair{"org.example.Mail", "Mail"}, std::pair{"org.example.Web", "Webmail"},
          std::pair{"org.example.Maps", "Maps"}}) {
        device.install(identifier, name);
    }
    device.put(File::appRules,
               "<dict><key>org.example.Mail</key><dict/><key>org.example.Maps</key><dict/>"
               "<key>org.example.Web</key><dict/></dict>");
    device.launch();
    platform::TableView* main = device.table();
    device.tap(120, 59);
    device.type(QStringLiteral("MAIL"));
    ASSERT_NE(device.table(), main);
    EXPECT_EQ(titles(device, 0), QStringList({QStringLiteral("Mail"), QStringLiteral("Webmail")}));
    device.swipeToDelete(0, 0);
    EXPECT_EQ(titles(device, 0), QStringList({QStringLiteral("Webmail")}));
    EXPECT_EQ(keysOf(device.plist(File::appRules)), (Keys{"org.example.Maps", "org.example.Web"}));
    device.tap(120, 59);
    device.key(Qt::Key_Escape);
    EXPECT_EQ(device.table(), main);
    EXPECT_EQ(titles(device, 1), QStringList({QStringLiteral("Maps"), QStringLiteral("Webmail")}));
}

TEST(MainScreenTest, ChoosingInTheSearchResultsAddsThatApp) {
    TestDevice device;
    device.install("org.example.Mail", "Mail");
    device.install("org.example.Maps", "Maps");
    device.launch();
    openChooser(device);
    device.tap(120, 59);
    device.type(QStringLiteral("aps"));
    device.tapRow(0, 0);
    EXPECT_EQ(keysOf(device.plist(File::appRules)), (Keys{"150", "org.example.Maps"}));
}

TEST(MainScreenTest, WarnsWhenTheFirewallIsDisabled) {
    TestDevice device;
    device.putBytes(device.path(File::appRules).parent_path() / "com.Urmeld.Firewall.disabled", "");
    device.launch();
    ASSERT_TRUE(QTest::qWaitFor([&] { return device.alert() != nullptr; }, 1000));
    device.answer(0);
    EXPECT_EQ(device.alert(), nullptr);
}

TEST(MainScreenTest, TableHasBandsOnlyBetweenSections) {
    TestDevice device;
    device.install("org.example.Mail", "Mail");
    device.put(File::appRules, mailRecord);
    device.launch();
    const QRect lastGlobal = device.table()->rectForRow({0, 1});
    const QRect firstApp = device.table()->rectForRow({1, 0});
    EXPECT_EQ(firstApp.top() - lastGlobal.bottom() - 1, 3);
    EXPECT_EQ(firstApp.height(), 50);
    EXPECT_EQ(device.table()->contentHeight(), 38 + 2 * 50 + 3 + 50);
    EXPECT_EQ(device.table()->cellForRow({1, 0})->accessory(), platform::TableViewCell::Accessory::disclosureIndicator);
}

}  // namespace
