// All that a person reads on the screens and alerts behind the settings but for the documentation, word by word.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <algorithm>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "platform/ui/alert/AlertView.h"
#include "platform/ui/navigation/ViewController.h"
#include "screens/settings/LogTextView.h"
#include "support/TestDevice.h"

namespace {

using Texts = std::vector<std::string>;

// What stands on the screen, or on the alert over it, from the top and from the left.
Texts textsOn(const QWidget& shown) {
    std::vector<std::tuple<int, int, QString>> found;
    const auto note = [&](const QWidget& widget, const QString& text) {
        const QPoint at = widget.mapTo(&shown, QPoint());
        if (widget.isVisible() && !text.isEmpty()) found.emplace_back(at.y(), at.x(), text);
    };
    for (const auto* label : shown.findChildren<QLabel*>()) note(*label, label->text());
    for (const auto* field : shown.findChildren<QLineEdit*>()) note(*field, field->text());
    for (const auto* button : shown.findChildren<QAbstractButton*>()) note(*button, button->text());
    for (const auto* log : shown.findChildren<screens::LogTextView*>()) note(*log, log->visibleText());
    std::sort(found.begin(), found.end());
    Texts texts;
    for (const auto& [y, x, text] : found) texts.push_back(text.toStdString());
    return texts;
}

TEST(SettingsTexts, AreTheseToTheLetter) {
    const auto tapSetting = [](QStringView row, int x = 120) {
        return [=](TestDevice& device) {
            device.tap(26, 20);
            device.tapRow(row, x);
        };
    };
    const std::string exportHelp =
        "To export all your settings, just tap on the export-button and a file will be saved in "
        "/var/mobile/Library/Preferences/Vxm/.\nTo import a previously exported file, please place it in that folder, "
        "reload this view and then tap on it.";
    const struct {
        const char* what;
        std::function<void(TestDevice&)> go;
        Texts texts;
    } table[] = {
        {"no internet",
         tapSetting(u"Documentation"),
         {"No Internet Connection",
          "You require an internet connection via WiFi or cellular network for additional Information.", "Ok"}},
        {"log switched on",
         tapSetting(u"Log", 285),
         {"Please Read",
          "Logging will need additional resources and will fill the memory. Disable logging if you don't need it.",
          "OK"}},
        {"log", tapSetting(u"Log"), {"Log", "no content"}},
        {"delete all",
         tapSetting(u"Delete All Rules and Settings"),
         {"Delete all Rules", "Do you really want to delete all rules?", "Cancel", "Yes"}},
        {"export", tapSetting(u"Import/Export Settings"), {"Import/Export", exportHelp, "Export", "mine.plist"}},
        {"import",
         [&](TestDevice& device) {
             tapSetting(u"Import/Export Settings")(device);
             device.tapRow(u"mine.plist");
         },
         {"Do you want to import Settings from mine.plist? All current settings will be overwritten!!!", "mine.plist",
          "Cancel", "YES"}},
        {"host list",
         [](TestDevice& device) {
             for (const QStringView row : {u"Global Allow", u"Import | Delete All"}) device.tapRow(row);
             device.answer(1);
         },
         {"Import", "hosts.txt"}},
        {"host list import",
         [](TestDevice& device) {
             for (const QStringView row : {u"Global Allow", u"Import | Delete All"}) device.tapRow(row);
             device.answer(1);
             device.tapRow(u"hosts.txt");
         },
         {"Do you want to import rules from this file?", "hosts.txt", "Cancel", "YES"}},
    };
    for (const auto& [what, go, texts] : table) {
        TestDevice device;
        platform::FixedNetwork none(platform::FixedNetwork::Kind::none);
        device.device().network = &none;
        device.put(store::File::guiSettings, "<dict/>");
        device.putBytes(device.files().exportDirectory() / "mine.plist", "");
        device.putBytes(device.files().listDirectory() / "hosts.txt", "");
        device.launch();
        go(device);
        EXPECT_EQ(textsOn(device.alert() ? *device.alert() : *device.screen()->view()), texts) << what;
    }
}

}  // namespace
