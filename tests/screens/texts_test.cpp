// All that a person reads on the screens and alerts, word by word; the help explains every row.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/ui/controls/ImageButton.h"
#include "screens/Documents.h"
#include "screens/settings/LogTextView.h"
#include "support/TestDevice.h"

namespace {

using Texts = std::vector<std::string>;

// What stands on the screen, or on the alert over it, from the top and from the left.
Texts textsOn(const QWidget& shown) {
    std::vector<std::tuple<int, int, QString>> found;
    const auto note = [&](const QWidget* widget, const QString& text) {
        const QPoint at = widget->mapTo(&shown, QPoint());
        if (widget->isVisible() && !text.trimmed().isEmpty()) found.emplace_back(at.y(), at.x(), text);
    };
    for (const auto* label : shown.findChildren<QLabel*>()) note(label, label->text());
    for (const auto* field : shown.findChildren<QLineEdit*>())
        note(field, field->text().isEmpty() ? field->placeholderText() : field->text());
    for (const auto* button : shown.findChildren<QAbstractButton*>()) note(button, button->text());
    for (const auto* log : shown.findChildren<screens::LogTextView*>()) note(log, log->visibleText());
    std::sort(found.begin(), found.end());
    Texts texts;
    for (const auto& [y, x, text] : found) texts.push_back(text.toStdString());
    return texts;
}

struct TextsTest : testing::Test {
    void launch(const char* settings = "<dict/>") {
        for (const char* app : {"Mail", "Maps"}) device.install(std::string("org.example.") + app, app);
        device.put(store::File::appRules,
                   "<dict><key>com.apple.gamed</key><dict/><key>org.example.Mail</key><dict/></dict>");
        if (settings) device.put(store::File::guiSettings, settings);
        device.putBytes(device.files().exportDirectory() / "mine.plist", "");
        device.putBytes(device.files().listDirectory() / "hosts.txt", "");
        device.launch();
        device.window()->resize(320, 1000);  // room for all rows
        QApplication::processEvents();
    }
    // Taps a button of the alert or of the bar, else a row; with a star before it, the row's switch.
    void tap(const QString& name) {
        for (int button = 0; device.alert() && button < device.alert()->numberOfButtons(); ++button) {
            if (device.alert()->button(button)->text() == name) return device.answer(button);
        }
        for (const auto* button : device.screen()->view()->findChildren<platform::ImageButton*>()) {
            if (button->accessibleName() == name && button->isVisible()) return device.tapButton(name);
        }
        name.startsWith(u'*') ? device.tapRow(name.mid(1), 285) : device.tapRow(name);
    }
    void expectBehind(const std::vector<const char*>& way, const Texts& texts) {
        for (const char* name : way) tap(QString::fromUtf8(name));
        QApplication::processEvents();
        EXPECT_EQ(textsOn(device.alert() ? *device.alert() : *device.screen()->view()), texts)
            << (way.empty() ? "at the start" : way.back());
    }

    TestDevice device;
};

TEST_F(TextsTest, OfScreensAndAlerts) {
    const std::pair<std::vector<const char*>, Texts> places[] = {
        {{},
         {"Vexmor", "Search", "Global Allow", "Applied to all Apps", "Global Deny", "Applied to all Apps",
          "GameCenterDaemon", "com.apple.gamed", "Mail", "org.example.Mail"}},
        {{"Add"}, {"Add App", "Search", "Maps", "org.example.Maps"}},
        {{"Mail"},
         {"Mail", "Allow All Connections", "Deny All Connections", "Still Apply Detailed Rules",
          "Applies all rules set below", "Block If NOT On WiFi", "This will save mobile data.", "Always Allow Rules",
          "Connections which are allowed.", "Always Deny Rules", "Connections which are being blocked."}},
        {{"Mail", "Always Allow Rules"},
         {"Always Allow", "Search", "Name", "Date", "Add Hostname/IP", "For details please consult the help page."}},
        {{"Mail", "Always Deny Rules"},
         {"Always Deny", "Search", "Name", "Date", "Add Hostname/IP", "For details please consult the help page."}},
        {{"Mail", "Always Deny Rules", "Add Hostname/IP"},
         {"Create Rule: enter hostname/IP without www.", "*example.net:80", "Cancel", "OK"}},
        {{"Global Allow"},
         {"Global Allow", "Search", "Name", "Date", "Add Hostname/IP", "For details please consult the help page.",
          "Import | Delete All", "Please be careful!"}},
        {{"Global Deny"},
         {"Global Deny", "Search", "Name", "Date", "Add Hostname/IP", "For details please consult the help page.",
          "Import | Delete All", "Please be careful!"}},
        {{"Global Deny", "Add Hostname/IP"},
         {"Create Global Rule: enter hostname/IP without www.", "*example.net:80", "Cancel", "OK"}},
        {{"Global Deny", "Edit"},
         {"Edit Mode", "While in edit mode you can tap the text of a rule and manually change it.", "OK"}},
        {{"Global Deny", "Import | Delete All"},
         {"Import/Delete",
          ("Place a list into /Applications/VexmorGUI.app/Lists/ to import it. For more information please check the "
           "documentation.\nTap on Delete to clear all rules!"),
          "Cancel", "Import", "Delete"}},
        {{"Global Deny", "Import | Delete All", "Delete"},
         {"Delete all Rules?", "Do you want to delete all rules in this list?", "Cancel", "OK"}},
        {{"Global Deny", "Import | Delete All", "Import"}, {"Import", "hosts.txt"}},
        {{"Global Deny", "Import | Delete All", "Import", "hosts.txt"},
         {"Do you want to import rules from this file?", "hosts.txt", "Cancel", "YES"}},
        {{"Settings"},
         {"Settings", "Enabled", "Completely disable/enable Vxm.", "Documentation", "Browse Vexmor documentation.",
          "Block If NOT On WiFi", "In apps hooked by Vexmor.", "Allow All Sess. Respects Global",
          "Global Rules will be respected", "Log", "Tap cell to view the log.", "Deny Tab In Front", "For the popup.",
          "Import/Export Settings", "For all settings and rules.", "Delete All Rules and Settings",
          "Will ask for confirmation."}},
        {{"Settings", "Documentation"}, {"Documentation"}},
        {{"Settings", "Log"}, {"Log", "no content"}},
        {{"Settings", "*Log"},
         {"Please Read",
          "Logging will need additional resources and will fill the memory. Disable logging if you don't need it.",
          "OK"}},
        {{"Settings", "Delete All Rules and Settings"},
         {"Delete all Rules", "Do you really want to delete all rules?", "Cancel", "Yes"}},
        {{"Settings", "Import/Export Settings"},
         {"Import/Export",
          "To export all your settings, just tap on the export-button and a file will be saved in "
          "/var/mobile/Library/Preferences/Vxm/.\nTo import a previously exported file, please place it in that "
          "folder, reload this view and then tap on it.",
          "Export", "mine.plist"}},
        {{"Settings", "Import/Export Settings", "mine.plist"},
         {"Do you want to import Settings from mine.plist? All current settings will be overwritten!!!", "mine.plist",
          "Cancel", "YES"}},
    };
    for (const auto& [way, texts] : places) {
        launch();
        expectBehind(way, texts);
    }
}

TEST_F(TextsTest, OfAlertsOnOccasion) {
    platform::FixedNetwork none(platform::FixedNetwork::Kind::none);
    device.device().network = &none;
    launch();
    expectBehind({"Settings", "Documentation"},
                 {"No Internet Connection",
                  "You require an internet connection via WiFi or cellular network for additional Information.", "Ok"});
    // The help of the rule lists, before there are any settings and when these want it.
    const std::pair<const char*, std::string> help[] = {
        {"<dict><key>showAllowHelp</key><true/></dict>", ", which are allowed"},
        {nullptr, ""},
    };
    for (const auto& [settings, afterFirstHost] : help) {
        std::filesystem::remove(device.path(store::File::guiSettings));
        launch(settings);
        expectBehind(
            {"Global Deny"},
            {"Global Allow",
             "Here you can manually enter hostnames or IPs, for example example.net" + afterFirstHost +
                 ". These rules won't override the rules of an app but will take effect if no app-specific rule for "
                 "the entered hostname exists. \n If you enter a hostname with an asterix * in front, for example "
                 "*example.net, all subdomains which contain that hostname will be allowed. According the example: "
                 "hostnames like static.example.net.",
             "Dismiss", "Hide Alert"});
    }
    device.putBytes(device.path(store::File::appRules).parent_path() / "com.Urmeld.Firewall.disabled", "");
    launch();
    ASSERT_TRUE(QTest::qWaitFor([this] { return device.alert() != nullptr; }));
    expectBehind({},
                 {"Attention!",
                  "Firewall is disabled. You can activate it in the settings or via the toogle for SBSettings.", "OK"});
}

TEST_F(TextsTest, HelpExplainsEveryRow) {
    for (const char* chapter : {"Mail", "Settings"}) {
        launch();
        tap(QString::fromUtf8(chapter));
        QList<QStringList> sections;
        device.table()->forEachCell([&](platform::IndexPath row, const platform::TableViewCell& cell) {
            if (row.row == 0) sections.append(QStringList());
            sections.last().append(cell.accessibleName());
        });
        EXPECT_EQ(sections,
                  documents::rowsInHelp(*chapter == 'M' ? QStringLiteral("app") : QStringLiteral("settings")));
    }
}

}  // namespace
