// The app without mouse or finger.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QWindow>

#include "platform/ui/alert/AlertView.h"
#include "platform/ui/input/Focus.h"
#include "platform/ui/navigation/ViewController.h"
#include "platform/ui/search/SearchDisplayController.h"
#include "platform/ui/table/TableView.h"
#include "store/Schema.h"
#include "store/rules/RuleList.h"
#include "support/TestDevice.h"

namespace {

class KeyboardTest : public testing::Test {
protected:
    void SetUp() override {
        for (const char* name : {"Anchor", "Beacon", "Candle"})
            device.install(std::string("org.example.") + name, name);
        device.put(store::File::appRules, "<dict><key>org.example.Anchor</key><dict/></dict>");
        device.put(store::File::globalRules,
                   "<dict><key>globalAllow</key><array><dict><key>rule</key><string>one.example</string></dict>"
                   "<dict><key>rule</key><string>two.example</string></dict></array></dict>");
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
    void goToRow(int rowsFromTheTop) {
        tabTo(QStringLiteral("rows"));
        press(Qt::Key_Home);
        for (int row = 0; row < rowsFromTheTop; ++row) press(Qt::Key_Down);
    }
    QString title() const { return device.screen()->view()->accessibleName(); }

    std::optional<store::AppRuleRecord> record(const std::string& name) const {
        const auto rules = device.plist(store::File::appRules);
        if (!rules || !rules->find("org.example." + name)) return std::nullopt;
        return store::AppRuleRecord::of(*rules, "org.example." + name);
    }
    QStringList rules(const store::Value* list) const {
        QStringList rules;
        if (!list) return rules;
        const store::RuleList loaded = store::RuleList::load(list);
        for (std::size_t position = 0; position < loaded.size(); ++position) {
            const std::string_view rule = loaded.rule(position);
            rules.append(QString::fromUtf8(rule.data(), qsizetype(rule.size())));
        }
        return rules;
    }

    TestDevice device;
};

TEST_F(KeyboardTest, PutsAnAppUnderTheFirewallChangesItAndTakesItOff) {
    tabTo(QStringLiteral("Add"));
    press(Qt::Key_Return);
    ASSERT_EQ(title(), u"Add App");
    goToRow(0);
    press(Qt::Key_Return);
    ASSERT_EQ(title(), u"Vexmor");
    ASSERT_TRUE(record("Beacon"));

    goToRow(3);
    press(Qt::Key_Return);
    ASSERT_EQ(title(), u"Beacon");
    goToRow(1);
    press(Qt::Key_Space);
    EXPECT_EQ(record("Beacon")->blanketMode(), store::BlanketMode::denyAll);
    press(Qt::Key_Up);
    press(Qt::Key_Space);
    EXPECT_EQ(record("Beacon")->blanketMode(), store::BlanketMode::denyAll) << "that switch is off duty";
    tabTo(QStringLiteral("Firewall enabled for Beacon"));
    press(Qt::Key_Space);
    EXPECT_FALSE(record("Beacon")->enabled());

    goToRow(5);
    press(Qt::Key_Enter);
    ASSERT_EQ(title(), u"Always Deny");
    goToRow(0);
    press(Qt::Key_Return);
    type(QStringLiteral("Tracker.example"));
    press(Qt::Key_Return);
    EXPECT_EQ(rules(record("Beacon")->dictionary().find(store::keys::deny)),
              QStringList{QStringLiteral("tracker.example")});

    press(Qt::Key_Left, Qt::AltModifier);
    ASSERT_EQ(title(), u"Beacon");
    tabTo(QStringLiteral("Block If NOT On WiFi"));
    press(Qt::Key_Escape);
    ASSERT_EQ(title(), u"Vexmor");
    tabTo(QStringLiteral("Search"));
    type(QStringLiteral("bea"));
    press(Qt::Key_Down);
    press(Qt::Key_Delete);
    EXPECT_TRUE(record("Beacon")) << "the first press only uncovers the button";
    press(Qt::Key_Delete);
    EXPECT_FALSE(record("Beacon"));
    EXPECT_TRUE(record("Anchor"));
    press(Qt::Key_Escape);
    EXPECT_EQ(focused(), u"rows");
    EXPECT_EQ(title(), u"Vexmor");
}

TEST_F(KeyboardTest, SortsEditsAndAnswersAlerts) {
    const auto globalAllow = [this] {
        return rules(device.plist(store::File::globalRules)->find(store::keys::globalAllow));
    };
    goToRow(0);
    press(Qt::Key_Return);
    ASSERT_EQ(title(), u"Global Allow");

    tabTo(QStringLiteral("Sort by Name"));
    press(Qt::Key_Right);
    EXPECT_EQ(focused(), u"Sort by Date");
    EXPECT_FALSE(device.screen()->view()->findChild<platform::SearchBar*>()->isVisible());
    press(Qt::Key_Left);
    EXPECT_TRUE(device.screen()->view()->findChild<platform::SearchBar*>()->isVisible());

    tabTo(QStringLiteral("Edit"));
    press(Qt::Key_Space);
    tabTo(QStringLiteral("two.example"));
    press(Qt::Key_End);
    type(QStringLiteral(".org"));
    press(Qt::Key_Return);
    EXPECT_EQ(globalAllow(), (QStringList{QStringLiteral("one.example"), QStringLiteral("two.example.org")}));
    goToRow(2);
    press(Qt::Key_Return);
    EXPECT_EQ(focused(), u"one.example") << "a row that can be edited is";
    press(Qt::Key_Escape);
    tabTo(QStringLiteral("Done"));
    press(Qt::Key_Space);

    const struct {
        std::vector<Qt::Key> keys;
        qsizetype left;
    } answers[] = {
        {{Qt::Key_Escape}, 2},
        {{Qt::Key_Return}, 2},  // "Cancel" is where the keyboard begins
        {{Qt::Key_Backtab, Qt::Key_Return, Qt::Key_Escape}, 2},
        {{Qt::Key_Down, Qt::Key_Down, Qt::Key_Space, Qt::Key_Right, Qt::Key_Space}, 0},
    };
    for (const auto& [keys, left] : answers) {
        goToRow(1);
        press(Qt::Key_Return);
        ASSERT_TRUE(device.alert());
        EXPECT_TRUE(platform::Focus::isSeen(device.window()->focusWidget()));
        for (const Qt::Key key : keys) press(key);
        EXPECT_FALSE(device.alert());
        EXPECT_EQ(globalAllow().size(), left);
    }
}

TEST_F(KeyboardTest, TabFollowsTheEyeAndTheFocusShowsOnlyToTheKeyboard) {
    QStringList reached;
    tabTo(QStringLiteral("Settings"));
    do {
        reached.append(focused());
        press(Qt::Key_Tab);
    } while (focused() != reached.front() && reached.size() < 20);
    EXPECT_EQ(reached, (QStringList{QStringLiteral("Settings"), QStringLiteral("Add"), QStringLiteral("Search"),
                                    QStringLiteral("rows")}));
    EXPECT_TRUE(platform::Focus::isSeen(device.window()->focusWidget()));
    device.tap(160, 500);
    EXPECT_FALSE(platform::Focus::isByKeyboard());
    for (int step = 0; step < 2; ++step) press(Qt::Key_Backtab);
    EXPECT_EQ(focused(), u"Add");
    press(Qt::Key_Space);
    EXPECT_EQ(title(), u"Add App");
    EXPECT_TRUE(platform::Focus::isSeen(device.table())) << "the next screen goes on with it";
}

}  // namespace
