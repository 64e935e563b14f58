// What the rows of the app screens and the settings say, to the letter; the help explains every one of them.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <functional>
#include <vector>

#include "platform/ui/alert/AlertView.h"
#include "platform/ui/navigation/ViewController.h"
#include "screens/Documents.h"
#include "support/RowNamed.h"
#include "support/TestDevice.h"
#include "views/VxmNavBarView.h"

namespace {

struct Row {
    QStringView title;
    QStringView below = u"";
};

// What the rows say, section by section, in a window that has room for all of them.
QList<QStringList> titlesInSight(TestDevice& device) {
    device.window()->resize(320, 1000);
    QApplication::processEvents();
    QList<QStringList> sections;
    device.table()->forEachCell([&](platform::IndexPath row, const platform::TableViewCell& cell) {
        if (row.row == 0) sections.append(QStringList());
        sections.last().append(cell.accessibleName());
    });
    return sections;
}

TEST(TextsTest, RowsAndTitlesOfScreensWithTables) {
    const struct {
        const char* title;
        std::function<void(TestDevice&)> go;
        std::vector<Row> rows;
        QStringView chapter;  // of the help, if it explains every row
    } screens[] = {
        {"Vexmor",
         [](TestDevice&) {},
         {{u"Global Allow", u"Applied to all Apps"},
          {u"Global Deny", u"Applied to all Apps"},
          {u"GameCenterDaemon", u"com.apple.gamed"},
          {u"Mail", u"org.example.Mail"}},
         {}},
        {"Add App", [](TestDevice& device) { device.tap(292, 20); }, {{u"Maps", u"org.example.Maps"}}, {}},
        {"Mail",
         [](TestDevice& device) { device.tapRow(u"Mail"); },
         {{u"Allow All Connections"},
          {u"Deny All Connections"},
          {u"Still Apply Detailed Rules", u"Applies all rules set below"},
          {u"Block If NOT On WiFi", u"This will save mobile data."},
          {u"Always Allow Rules", u"Connections which are allowed."},
          {u"Always Deny Rules", u"Connections which are being blocked."}},
         u"app"},
        {"Settings",
         [](TestDevice& device) { device.tap(26, 20); },
         {{u"Enabled", u"Completely disable/enable Vxm."},
          {u"Documentation", u"Browse Vexmor documentation."},
          {u"Block If NOT On WiFi", u"In apps hooked by Vexmor."},
          {u"Allow All Sess. Respects Global", u"Global Rules will be respected"},
          {u"Log", u"Tap cell to view the log."},
          {u"Deny Tab In Front", u"For the popup."},
          {u"Import/Export Settings", u"For all settings and rules."},
          {u"Delete All Rules and Settings", u"Will ask for confirmation."}},
         u"settings"},
    };
    for (const auto& [title, go, rows, chapter] : screens) {
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
        for (const auto& [name, below] : rows) {
            const platform::IndexPath row = rowNamed(*device.table(), name);
            EXPECT_EQ(device.rowTexts(row.section, row.row).mid(1).join(QString()), below);
        }
        if (!chapter.isEmpty()) {
            EXPECT_EQ(titlesInSight(device), documents::rowsInHelp(chapter.toString()));
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
