// The app without mouse or finger.
#include <gtest/gtest.h>

#include "platform/ui/input/Focus.h"
#include "platform/ui/search/SearchDisplayController.h"
#include "store/Schema.h"
#include "support/RowNamed.h"
#include "support/Rules.h"
#include "support/TestDevice.h"

namespace {

constexpr const char* anchor = "org.example.Anchor";
constexpr const char* beacon = "org.example.Beacon";

struct KeyboardTest : testing::Test {
    void SetUp() override {
        device.install(anchor, "Anchor");
        device.install(beacon, "Beacon");
        device.put(store::File::appRules, "<dict><key>org.example.Anchor</key><dict/></dict>");
        device.put(store::File::globalRules, rulesFile("globalAllow", entry("one.example") + entry("two.example")));
        device.put(store::File::guiSettings, "<dict><key>didShowEditAlert</key><true/></dict>");
        device.launch();
        QApplication::setActiveWindow(device.window());
        ASSERT_TRUE(QTest::qWaitForWindowActive(device.window()));
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(device.window()->windowHandle(), key, modifiers);
        QApplication::processEvents();
    }
    void type(const QString& text) {
        for (const QChar character : text)
            QTest::sendKeyEvent(QTest::Click, device.window()->windowHandle(), Qt::Key_unknown, QString(character), {});
    }
    QString focused() const {
        const QWidget* widget = device.window()->focusWidget();
        return !widget ? QString() : widget == device.table() ? QStringLiteral("rows") : widget->accessibleName();
    }
    void tabTo(const QString& name) {
        for (int step = 0; step < 20 && focused() != name; ++step) press(Qt::Key_Tab);
        ASSERT_EQ(focused(), name);
    }
    void pressOn(const QString& name, Qt::Key key = Qt::Key_Space) {
        tabTo(name);
        press(key);
    }
    void pressOnRow(QStringView name, Qt::Key key = Qt::Key_Return) {
        pressOn(QStringLiteral("rows"), Qt::Key_Home);
        const platform::IndexPath wanted = rowNamed(*device.table(), name);
        int above = 0;
        device.table()->forEachCell([&](platform::IndexPath row, const auto&) { above += row < wanted; });
        for (int row = 0; row < above; ++row) press(Qt::Key_Down);
        press(key);
    }
    void enter(const QString& text) {
        type(text);
        press(Qt::Key_Return);
    }
    QString title() const { return device.screen()->view()->accessibleName(); }

    bool hasRecord(const char* app) const { return device.plist(store::File::appRules)->contains(app); }
    store::AppRuleRecord record() const {
        return store::AppRuleRecord::of(*device.plist(store::File::appRules), beacon);
    }
    QStringList globalAllow() const { return rulesIn(*device.plist(store::File::globalRules), "globalAllow"); }

    TestDevice device;
};

TEST_F(KeyboardTest, PutsAnAppUnderTheFirewallChangesItAndTakesItOff) {
    pressOn(QStringLiteral("Add"), Qt::Key_Return);
    ASSERT_EQ(title(), u"Add App");
    pressOnRow(u"Beacon");
    ASSERT_EQ(title(), u"Vexmor");
    ASSERT_TRUE(hasRecord(beacon));

    pressOnRow(u"Beacon");
    ASSERT_EQ(title(), u"Beacon");
    pressOnRow(u"Deny All Connections", Qt::Key_Space);
    EXPECT_EQ(record().blanketMode(), store::BlanketMode::denyAll);
    pressOn(QStringLiteral("Firewall enabled for Beacon"));
    EXPECT_FALSE(record().enabled());

    pressOnRow(u"Always Deny Rules", Qt::Key_Enter);
    ASSERT_EQ(title(), u"Always Deny");
    pressOnRow(u"Add Hostname/IP");
    enter(QStringLiteral("Tracker.example"));
    EXPECT_EQ(rulesIn(record().dictionary(), store::keys::deny), list({"tracker.example"}));

    press(Qt::Key_Left, Qt::AltModifier);
    ASSERT_EQ(title(), u"Beacon");
    pressOn(QStringLiteral("Block If NOT On WiFi"), Qt::Key_Escape);
    ASSERT_EQ(title(), u"Vexmor");
    tabTo(QStringLiteral("Search"));
    type(QStringLiteral("bea"));
    press(Qt::Key_Down);
    press(Qt::Key_Delete);
    EXPECT_TRUE(hasRecord(beacon)) << "the first press only uncovers the button";
    press(Qt::Key_Delete);
    EXPECT_FALSE(hasRecord(beacon));
    EXPECT_TRUE(hasRecord(anchor));
}

TEST_F(KeyboardTest, SortsEditsAndAnswersAlerts) {
    pressOnRow(u"Global Allow");
    ASSERT_EQ(title(), u"Global Allow");
    const auto* searchBar = device.screen()->view()->findChild<platform::SearchBar*>();
    pressOn(QStringLiteral("Sort by Name"), Qt::Key_Right);
    EXPECT_EQ(focused(), u"Sort by Date");
    EXPECT_FALSE(searchBar->isVisible());
    press(Qt::Key_Left);
    EXPECT_TRUE(searchBar->isVisible());

    pressOn(QStringLiteral("Edit"));
    pressOn(QStringLiteral("two.example"), Qt::Key_End);
    enter(QStringLiteral(".org"));
    EXPECT_EQ(globalAllow(), list({"one.example", "two.example.org"}));
    pressOnRow(u"one.example");
    EXPECT_EQ(focused(), u"one.example") << "a row that can be edited is";
    press(Qt::Key_Escape);
    pressOn(QStringLiteral("Done"));

    pressOnRow(u"Import | Delete All");
    ASSERT_TRUE(device.alert());
    EXPECT_TRUE(platform::Focus::isSeen(device.window()->focusWidget()));
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Space, Qt::Key_Right, Qt::Key_Space}) press(key);
    EXPECT_FALSE(device.alert());
    EXPECT_TRUE(globalAllow().isEmpty());
}

TEST_F(KeyboardTest, FocusShowsOnlyToTheKeyboard) {
    for (const char16_t* name : {u"Settings", u"Add", u"Search", u"rows"}) {
        tabTo(QString::fromUtf16(name));
        EXPECT_TRUE(platform::Focus::isSeen(device.window()->focusWidget()));
    }
    device.tap(160, 500);
    EXPECT_FALSE(platform::Focus::isByKeyboard());
    for (int step = 0; step < 2; ++step) press(Qt::Key_Backtab);
    EXPECT_EQ(focused(), u"Add");
    press(Qt::Key_Space);
    ASSERT_EQ(title(), u"Add App");
    EXPECT_TRUE(platform::Focus::isSeen(device.table())) << "the next screen goes on with it";
}

}  // namespace
