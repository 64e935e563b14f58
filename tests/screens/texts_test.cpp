// All that a person reads on the main screen, in the chooser and on the screen of one app, to the letter.
#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <functional>
#include <vector>

#include "platform/ui/alert/AlertView.h"
#include "platform/ui/navigation/ViewController.h"
#include "support/TestDevice.h"
#include "views/VxmNavBarView.h"

namespace {

using Section = std::vector<QStringList>;

QStringList row(const char* title, const char* underText = nullptr) {
    QStringList texts{QString::fromUtf8(title)};
    if (underText) texts.append(QString::fromUtf8(underText));
    return texts;
}

TEST(TextsTest, RowsAndTitlesOfTheAppScreens) {
    const struct {
        const char* title;
        std::function<void(TestDevice&)> go;
        std::vector<Section> sections;
    } screens[] = {
        {"Vexmor",
         [](TestDevice&) {},
         {{row("Global Allow", "Applied to all Apps"), row("Global Deny", "Applied to all Apps")},
          {row("GameCenterDaemon", "com.apple.gamed"), row("Mail", "org.example.Mail")}}},
        {"Add App", [](TestDevice& device) { device.tap(292, 20); }, {{row("Maps", "org.example.Maps")}}},
        {"Mail",
         [](TestDevice& device) { device.tapRow(1, 1); },
         {{row("Allow All Connections"), row("Deny All Connections"),
           row("Still Apply Detailed Rules", "Applies all rules set below")},
          {row("Block If NOT On WiFi", "This will save mobile data.")},
          {row("Always Allow Rules", "Connections which are allowed."),
           row("Always Deny Rules", "Connections which are being blocked.")}}},
    };
    for (const auto& [title, go, sections] : screens) {
        SCOPED_TRACE(title);
        TestDevice device;
        device.install("org.example.Mail", "Mail");
        device.install("org.example.Maps", "Maps");
        device.put(store::File::appRules,
                   "<dict><key>com.apple.gamed</key><dict/><key>org.example.Mail</key><dict/></dict>");
        device.launch();
        go(device);
        const auto* bar = device.screen()->view()->findChild<views::VxmNavBarView*>();
        EXPECT_EQ(bar->titleLabel()->text(), QString::fromUtf8(title));
        for (int section = 0; section < int(sections.size()); ++section) {
            const Section& rows = sections[std::size_t(section)];
            ASSERT_EQ(device.rows(section), int(rows.size()));
            for (int each = 0; each < int(rows.size()); ++each)
                EXPECT_EQ(device.rowTexts(section, each), rows[std::size_t(each)]);
        }
    }
}

TEST(TextsTest, AlertOfADisabledFirewall) {
    TestDevice device;
    device.putBytes(device.path(store::File::appRules).parent_path() / "com.Urmeld.Firewall.disabled", "");
    device.launch();
    ASSERT_TRUE(QTest::qWaitFor([&] { return device.alert() != nullptr; }));
    EXPECT_EQ(device.alert()->title(), u"Attention!");
    EXPECT_EQ(device.alert()->message(),
              u"Firewall is disabled. You can activate it in the settings or via the toogle for SBSettings.");
    ASSERT_EQ(device.alert()->numberOfButtons(), 1);
    EXPECT_EQ(device.alert()->button(0)->text(), u"OK");
}

}  // namespace
