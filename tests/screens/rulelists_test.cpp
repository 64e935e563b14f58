// The rule lists of all apps and of one app, used as a person uses them, with the files after every step.
#include <gtest/gtest.h>
#include <unicode/timezone.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <algorithm>

#include "platform/ui/alert/AlertView.h"
#include "platform/ui/controls/ImageButton.h"
#include "platform/ui/controls/TextField.h"
#include "platform/ui/search/SearchDisplayController.h"
#include "platform/ui/table/TableView.h"
#include "screens/rules/RuleListHeader.h"
#include "screens/rules/RuleListScreen.h"
#include "screens/rules/SortSelector.h"
#include "store/Schema.h"
#include "support/AnotherPerson.h"
#include "support/TestDevice.h"
#include "views/IconView.h"
#include "views/VxmNavBarView.h"
#include "views/VxmRuleCell.h"

namespace {

namespace fs = std::filesystem;
using store::File;

constexpr const char* identifier = "org.example.Mail";

std::string entry(const std::string& rule, int minute = 0, const std::string& more = {}) {
    const std::string minutes = (minute < 10 ? "0" : "") + std::to_string(minute);
    return "<dict><key>date</key><date>2026-01-01T10:" + minutes + ":00Z</date>" + more + "<key>rule</key><string>" +
           rule + "</string></dict>";
}

// Where a list is kept and how a person gets to it.
struct Place {
    const char* name;
    bool isGlobal;
    bool isDeny;
    const char* key;
    const char* otherKey;
    const char* title;
    const char* alertTitle;
};

constexpr Place places[] = {
    {"GlobalAllow", true, false, "globalAllow", "globalDeny", "Global Allow",
     "Create Global Rule: enter hostname/IP without www."},
    {"GlobalDeny", true, true, "globalDeny", "globalAllow", "Global Deny",
     "Create Global Rule: enter hostname/IP without www."},
    {"AppAllow", false, false, "allow", "deny", "Always Allow", "Create Rule: enter hostname/IP without www."},
    {"AppDeny", false, true, "deny", "allow", "Always Deny", "Create Rule: enter hostname/IP without www."},
};

class RuleListTest : public testing::TestWithParam<Place> {
protected:
    File file() const { return GetParam().isGlobal ? File::globalRules : File::appRules; }

    // Puts the list into its file, next to a list and a key that are none of the screen's business, and opens it.
    void open(const std::string& entries) {
        device.install(identifier, "Mail");
        write(entries);
        if (GetParam().isGlobal) device.put(File::appRules, "<dict><key>150</key><true/></dict>");
        device.put(File::guiSettings, "<dict><key>showAllowHelp</key><false/></dict>");
        device.launch();
        openList();
    }

    void write(const std::string& entries) {
        const std::string lists = std::string("<dict><key>") + GetParam().key + "</key><array>" + entries +
                                  "</array><key>" + GetParam().otherKey + "</key><array>" + entry("other") +
                                  "</array><key>own</key><integer>7</integer></dict>";
        device.put(file(), GetParam().isGlobal
                               ? lists
                               : std::string("<dict><key>") + identifier + "</key>" + lists + "</dict>");
    }

    void openList() {
        if (GetParam().isGlobal) {
            device.tapRow(0, GetParam().isDeny ? 1 : 0);
        } else {
            device.tapRow(1, 0);
            device.tapRow(2, GetParam().isDeny ? 1 : 0);
        }
    }

    void back() {
        device.tap(20, 20);
        if (!GetParam().isGlobal) device.tap(20, 20);
    }

    screens::RuleListScreen* screen() { return qobject_cast<screens::RuleListScreen*>(device.screen()); }

    store::Dictionary stored() {
        const auto whole = device.plist(file());
        return GetParam().isGlobal ? *whole : *whole->find(identifier)->dictionary();
    }

    QStringList storedRules(const char* key = nullptr) {
        QStringList rules;
        const store::Dictionary lists = stored();
        const auto* list = lists.find(key ? key : GetParam().key);
        if (!list) return rules;
        const auto entries = list->array();
        for (const auto& each : *entries) {
            rules.append(QString::fromStdString(each.dictionary()->find("rule")->string().value_or("?")));
        }
        return rules;
    }

    QStringList shownRules(int section = 1) {
        QStringList rules;
        for (int row = 0; row < device.rows(section); ++row) rules.append(device.rowTexts(section, row).value(0));
        return rules;
    }

    void addRule(const QString& text) {
        device.tapRow(0, 0);
        device.type(text);
        device.key(Qt::Key_Return);
    }

    void edit() { device.tap(292, 20); }
    void sortByDate() { device.tap(210, 40 + 62); }
    void sortByName() { device.tap(110, 40 + 62); }

    void expectTheRestIsUntouched() {
        EXPECT_EQ(storedRules(GetParam().otherKey), QStringList(QStringLiteral("other")));
        EXPECT_EQ(stored().find("own")->integer(), 7);
        EXPECT_TRUE(device.posts().empty());
    }

    TestDevice device;
};

INSTANTIATE_TEST_SUITE_P(Places, RuleListTest, testing::ValuesIn(places),
                         [](const auto& each) { return std::string(each.param.name); });

QStringList list(std::initializer_list<const char*> texts) {
    QStringList result;
    for (const char* text : texts) result.append(QString::fromUtf8(text));
    return result;
}

TEST_P(RuleListTest, ShowsTheListInNameOrderWithoutDuplicates) {
    open(entry("beta") + entry("Alpha") + entry("alpha") + entry("beta", 5));
    EXPECT_EQ(shownRules().size(), 3);
    EXPECT_EQ(shownRules().value(2), QStringLiteral("beta"));
    EXPECT_EQ(screen()->navBarView()->titleLabel()->text(), QString::fromUtf8(GetParam().title));
    EXPECT_EQ(device.rows(0), GetParam().isGlobal ? 2 : 1);
    EXPECT_EQ(device.rowTexts(0, 0), list({"Add Hostname/IP", "For details please consult the help page."}));
    EXPECT_EQ(storedRules().size(), 4) << "showing writes nothing";
}

TEST_P(RuleListTest, AddsARuleInLowerCaseInItsPlace) {
    open(entry("a.example") + entry("z.example"));
    addRule(QStringLiteral("*M.Example:80"));
    EXPECT_EQ(device.alert(), nullptr);
    EXPECT_EQ(shownRules(), list({"*m.example:80", "a.example", "z.example"}));
    EXPECT_EQ(storedRules(), shownRules());
    EXPECT_EQ(device.plist(file())->find("150")->boolean(), true);
    EXPECT_FALSE(stored().contains("150") && !GetParam().isGlobal) << "the marker stands at the top level";
    expectTheRestIsUntouched();
}

TEST_P(RuleListTest, CancelledAndEmptyAddsStoreNothing) {
    open(entry("a.example"));
    const std::string before = device.bytes(file());
    device.tapRow(0, 0);
    EXPECT_EQ(device.alert()->title(), QString::fromUtf8(GetParam().alertTitle));
    const auto* field = qobject_cast<platform::TextField*>(QApplication::focusWidget());
    ASSERT_TRUE(field);
    EXPECT_EQ(field->geometry(), QRect(16, 84, 252, 25));
    EXPECT_EQ(field->placeholderText(), QStringLiteral("*example.net:80"));
    EXPECT_EQ(field->font().pixelSize(), 17);
    EXPECT_EQ(field->inputMethodHints(), Qt::ImhUrlCharactersOnly | Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText);
    EXPECT_TRUE(field->isClearButtonEnabled());
    const auto images = device.alert()->findChildren<views::IconView*>();
    EXPECT_TRUE(std::ranges::count(images, QRect(11, 80, 262, 31), &QWidget::geometry)) << "the field's background";
    device.type(QStringLiteral("x"));
    device.answer(0);
    addRule({});
    EXPECT_EQ(device.bytes(file()), before);
    EXPECT_EQ(shownRules(), list({"a.example"}));
}

TEST_P(RuleListTest, SameRuleCanBeAddedTwiceUntilTheListIsShownAgain) {
    open({});
    addRule(QStringLiteral("a.example"));
    addRule(QStringLiteral("a.example"));
    EXPECT_EQ(shownRules(), list({"a.example", "a.example"}));
    EXPECT_EQ(storedRules().size(), 2);
    back();
    openList();
    EXPECT_EQ(shownRules(), list({"a.example"}));
}

TEST_P(RuleListTest, AddsOddTexts) {
    const struct {
        QString typed;
        QString stored;
    } cases[] = {
        {QStringLiteral(" spaced out "), QStringLiteral(" spaced out ")},
        {QStringLiteral("ÄÖ.example"), QStringLiteral("äö.example")},
        {QString::fromUtf8("\xF0\x9F\x98\x80.example"), QString::fromUtf8("\xF0\x9F\x98\x80.example")},
        {QStringLiteral("e\u0301<&>\"'"), QStringLiteral("e\u0301<&>\"'")},
        {QString::fromUtf8("מארח.example"), QString::fromUtf8("מארח.example")},
        {QString(10000, u'X'), QString(10000, u'x')},
        {QStringLiteral("\none.example\r\n"), QStringLiteral("one.example")},
        {QStringLiteral("one.example\ntwo.example"), QStringLiteral("one.example two.example")},
    };
    open({});
    for (const auto& each : cases) {
        device.tapRow(0, 0);
        QApplication::clipboard()->setText(each.typed);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
        device.key(Qt::Key_Return);
        EXPECT_TRUE(storedRules().contains(each.stored)) << each.typed.left(40).toStdString();
    }
    EXPECT_EQ(storedRules().size(), int(std::size(cases)));
}

TEST_P(RuleListTest, DeletesTheSwipedRule) {
    open(entry("a.example") + entry("b.example", 0, "<key>note</key><string>kept</string>") + entry("c.example"));
    device.swipeToDelete(1, 0);
    EXPECT_EQ(shownRules(), list({"b.example", "c.example"}));
    EXPECT_EQ(storedRules(), list({"b.example", "c.example"}));
    EXPECT_EQ((*stored().find(GetParam().key)->array())[0].dictionary()->find("note")->string(), "kept");
    expectTheRestIsUntouched();
    device.swipeToDelete(0, 0);
    EXPECT_EQ(storedRules(), list({"b.example", "c.example"})) << "the row above the rules is none of them";
    EXPECT_EQ(shownRules(), storedRules());
}

TEST_P(RuleListTest, EditsInPlaceOnlyInEditMode) {
    open(entry("a.example") + entry("b.example") + entry("c.example"));
    device.tapRow(1, 1);
    EXPECT_FALSE(qobject_cast<platform::TextField*>(QApplication::focusWidget()));

    edit();
    ASSERT_TRUE(device.alert());
    EXPECT_EQ(device.alert()->title(), QStringLiteral("Edit Mode"));
    EXPECT_EQ(device.plist(File::guiSettings)->find("didShowEditAlert")->boolean(), true);
    device.answer(0);

    device.tapRow(1, 1);
    ASSERT_TRUE(qobject_cast<platform::TextField*>(QApplication::focusWidget()));
    EXPECT_FALSE(screen()->navBarView()->editButton()->isVisible());
    EXPECT_EQ(QApplication::focusWidget()->inputMethodHints(), Qt::ImhNone);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    device.type(QStringLiteral("Z.Example"));
    device.key(Qt::Key_Return);
    EXPECT_FALSE(qobject_cast<platform::TextField*>(QApplication::focusWidget())) << "nobody else takes the key";
    EXPECT_TRUE(screen()->navBarView()->editButton()->isVisible());
    EXPECT_EQ(shownRules(), list({"a.example", "z.example", "c.example"})) << "an edit does not sort";
    EXPECT_EQ(storedRules(), shownRules());
    expectTheRestIsUntouched();

    device.tapRow(0, 0);
    EXPECT_TRUE(device.alert()) << "the rows above the rules work in edit mode";
    device.answer(0);
    edit();
    EXPECT_FALSE(device.alert()) << "the explanation is given once";
    EXPECT_FALSE(screen()->isEditing());

    addRule(QStringLiteral("d.example"));
    EXPECT_EQ(shownRules(), list({"a.example", "c.example", "d.example", "z.example"})) << "an addition does";
    EXPECT_EQ(storedRules(), shownRules());
}

// A long list whose first rule is half typed.
class HalfTypedRule {
public:
    // Keys go to the active window alone; a finger or assistance also reaches one that is not.
    explicit HalfTypedRule(bool isElsewhere) {
        std::string entries;
        for (int host = 10; host < 60; ++host) entries += entry("host" + std::to_string(host), host);
        device.put(File::globalRules, "<dict><key>globalAllow</key><array>" + entries + "</array></dict>");
        device.put(File::guiSettings, "<dict><key>didShowEditAlert</key><true/></dict>");
        device.launch();
        device.tapRow(0, 0);
        device.tap(292, 20);
        device.tapRow(1, 0);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
        device.type(QStringLiteral("New"));
        if (!isElsewhere) return;
        elsewhere.show();
        elsewhere.activateWindow();
        QApplication::processEvents();
        EXPECT_FALSE(device.window()->isActiveWindow());
    }

    QStringList storedRules() const {
        QStringList rules;
        const auto stored = device.plist(File::globalRules)->find("globalAllow")->array();
        for (const auto& each : *stored) {
            rules.append(QString::fromStdString(*each.dictionary()->find("rule")->string()));
        }
        return rules;
    }

    TestDevice device;

private:
    QWidget elsewhere;
};

void sortByAssistance(TestDevice& device) {
    const auto* screen = qobject_cast<screens::RuleListScreen*>(device.screen());
    platform::ImageButton* date = screen->header()->sortSelector()->button(1);
    QAccessible::queryAccessibleInterface(date)->actionInterface()->doAction(
        QAccessibleActionInterface::toggleAction());
}

void askToReturn(TestDevice& device) {
    auto* field = qobject_cast<platform::TextField*>(device.window()->focusWidget());
    EXPECT_TRUE(qobject_cast<screens::RuleListScreen*>(device.screen())->shouldReturn(*field));
    EXPECT_FALSE(field->isFirstResponder());
}

// Ways in which the editing of the first row can end, other than by the key.
struct Ending {
    const char* name;
    void (*end)(TestDevice&);
};

class EditEndingTest : public testing::TestWithParam<std::tuple<Ending, bool>> {};

std::string nameOf(const testing::TestParamInfo<std::tuple<Ending, bool>>& each) {
    const auto& [ending, isElsewhere] = each.param;
    return std::string(ending.name) + (isElsewhere ? "WhileElsewhere" : "");
}

INSTANTIATE_TEST_SUITE_P(
    Endings, EditEndingTest,
    testing::Combine(
        testing::Values(Ending{"TapOnAnotherRow", [](TestDevice& device) { device.tapRow(1, 2); }},
                        Ending{"Back", [](TestDevice& device) { device.tap(20, 20); }},
                        Ending{"Scroll", [](TestDevice& device) { device.table()->setContentOffset(100000); }},
                        Ending{"DeletionOfAnotherRow", [](TestDevice& device) { device.swipeToDelete(1, 3); }},
                        Ending{"SortByAssistance", sortByAssistance}, Ending{"Return", askToReturn}),
        testing::Bool()),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    EndingsByKey, EditEndingTest,
    testing::Combine(testing::Values(Ending{"BackKey", [](TestDevice& device) { device.key(Qt::Key_Back); }},
                                     Ending{"Escape", [](TestDevice& device) { device.key(Qt::Key_Escape); }}),
                     testing::Values(false)),
    nameOf);

TEST_P(EditEndingTest, CommitsIntoItsOwnRow) {
    const auto& [ending, isElsewhere] = GetParam();
    HalfTypedRule list(isElsewhere);
    ending.end(list.device);
    QApplication::processEvents();
    const QStringList rules = list.storedRules();
    EXPECT_EQ(rules.value(0), QStringLiteral("new"));
    EXPECT_EQ(rules.value(1), QStringLiteral("host11"));
    EXPECT_EQ(rules.count(QStringLiteral("new")), 1);
}

TEST_P(RuleListTest, KeepsWhatIsTypedInAWindowThatIsNotTheActiveOne) {
    open(entry("a.example") + entry("b.example"));
    edit();
    if (device.alert()) device.answer(0);
    QWidget elsewhere;
    elsewhere.show();
    elsewhere.activateWindow();
    QApplication::processEvents();
    ASSERT_FALSE(device.window()->isActiveWindow());
    device.tapRow(1, 1, 60);
    QWidget* field = device.window()->focusWidget();
    ASSERT_TRUE(qobject_cast<platform::TextField*>(field));
    QTest::keyClicks(field, QStringLiteral("x"));
    device.tapRow(1, 0, 60);
    EXPECT_EQ(storedRules(), shownRules());
    EXPECT_NE(storedRules().value(1), u"b.example");
}

TEST(HalfTypedRuleTest, IsOutOfReachUnderAnAlert) {
    HalfTypedRule list(false);
    list.device.tapRow(0, 0);
    auto* cell = static_cast<views::VxmRuleCell*>(list.device.table()->cellForRow({1, 1}));
    QAccessibleInterface* field = QAccessible::queryAccessibleInterface(cell->titleTextField());
    field->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    field->editableTextInterface()->replaceText(0, 1, QStringLiteral("x"));
    EXPECT_FALSE(cell->titleTextField()->isFirstResponder());
    EXPECT_EQ(list.storedRules().value(1), QStringLiteral("host11"));
}

// At termination no file is written.
TEST(HalfTypedRuleTest, GoesWithTheApp) {
    const std::pair<const char*, void (*)(TestDevice&)> ways[] = {
        {"closed", [](TestDevice& device) { device.window()->close(); }},
        {"gone", [](TestDevice& device) { device.terminate(); }},
        {"closed and gone", [](TestDevice& device) { device.window()->close(), device.terminate(); }},
    };
    for (const auto& [name, end] : ways) {
        for (const bool isElsewhere : {false, true}) {
            SCOPED_TRACE(std::string(name) + (isElsewhere ? " while elsewhere" : ""));
            HalfTypedRule list(isElsewhere);
            end(list.device);
            QApplication::processEvents();
            EXPECT_EQ(list.storedRules().value(0), QStringLiteral("host10"));
        }
    }
}

TEST_P(RuleListTest, SearchNarrowsEditsAndDeletes) {
    open(entry("ads.example") + entry("b.example") + entry("static.ads.example"));
    platform::TableView* main = device.table();
    device.tap(100, 40 + 20);
    device.type(QStringLiteral("ADS"));
    ASSERT_NE(device.table(), main);
    EXPECT_EQ(shownRules(0), list({"ads.example", "static.ads.example"}));

    device.swipeToDelete(0, 0);
    EXPECT_EQ(shownRules(0), list({"static.ads.example"}));
    EXPECT_EQ(storedRules(), list({"b.example", "static.ads.example"}));

    edit();
    if (device.alert()) device.answer(0);
    device.tapRow(0, 0);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    device.type(QStringLiteral("New.Ads"));
    device.key(Qt::Key_Return);
    EXPECT_EQ(shownRules(0), list({"new.ads"}));
    EXPECT_EQ(storedRules(), list({"b.example", "new.ads"}));
    expectTheRestIsUntouched();
}

TEST_P(RuleListTest, WhateverEndsTheSearchKeepsTheEditOfAResult) {
    open(entry("ads.example") + entry("b.example") + entry("static.ads.example"));
    edit();
    if (device.alert()) device.answer(0);
    platform::SearchBar* bar = screen()->header()->searchBar();
    const auto tap = [&](const QWidget* widget) {
        const QPoint at = widget->mapTo(device.window(), widget->rect().center());
        device.tap(at.x(), at.y());
    };
    const auto tapButton = [&](const char* name) {
        for (const auto* button : bar->findChildren<QAbstractButton*>())
            if (button->accessibleName() == QLatin1String(name)) tap(button);
    };
    const std::pair<const char*, std::function<void()>> ends[] = {
        {"Clear", [&] { tapButton("Clear"); }},
        {"Cancel", [&] { tapButton("Cancel"); }},
        {"another text", [&] { bar->setText(QStringLiteral("b.")); }},
    };
    for (const auto& [name, end] : ends) {
        SCOPED_TRACE(name);
        tap(bar->field());
        device.type(QStringLiteral("static"));
        device.tapRow(0, 0);
        device.key(Qt::Key_End);
        device.type(QStringLiteral("+"));
        end();
        EXPECT_TRUE(storedRules().last().endsWith(u'+')) << storedRules().last().toStdString();
        screen()->searchController()->setActive(false, false);
        EXPECT_EQ(shownRules(), storedRules());
    }
    EXPECT_EQ(storedRules(), list({"ads.example", "b.example", "static.ads.example+++"}));
}

TEST_P(RuleListTest, SortsByDateNewestFirstWithoutWriting) {
    open(entry("a.example", 1) + entry("b.example", 3) + entry("c.example", 2));
    const std::string before = device.bytes(file());
    sortByDate();
    EXPECT_EQ(shownRules(), list({"b.example", "c.example", "a.example"}));
    EXPECT_FALSE(screen()->header()->searchBar()->isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return screen()->header()->sortSelector()->button(1)->isHighlighted(); }, 200));
    EXPECT_EQ(device.bytes(file()), before);

    addRule(QStringLiteral("m.example"));
    addRule(QStringLiteral("n.example"));
    const QStringList newestFirst = list({"n.example", "m.example", "b.example", "c.example", "a.example"});
    EXPECT_EQ(shownRules(), newestFirst) << "also within the second that a date is cut to";
    EXPECT_EQ(storedRules(), shownRules()) << "a write stores the order that is shown";

    back();
    openList();
    sortByDate();
    EXPECT_EQ(shownRules(), newestFirst) << "as far as the order of the file can tell";

    sortByName();
    EXPECT_EQ(shownRules(), list({"a.example", "b.example", "c.example", "m.example", "n.example"}));
    EXPECT_TRUE(screen()->header()->searchBar()->isVisible());
}

TEST_P(RuleListTest, OddEntriesAreShownOrLeftOutButNeverLost) {
    open(
        "<string>loose</string><dict><key>date</key><date>2026-01-01T10:00:00Z</date></dict>"
        "<dict><key>rule</key><integer>5</integer></dict><dict><key>rule</key><string>no date</string></dict>" +
        entry("x.example", 0, "<key>note</key><array><string>1</string></array>"));
    EXPECT_EQ(shownRules().filter(QStringLiteral("x.example")).size(), 1);
    EXPECT_EQ(shownRules().filter(QStringLiteral("no date")).size(), 1);
    addRule(QStringLiteral("y.example"));
    const std::string bytes = device.bytes(file());
    for (const char* kept : {"loose", "<integer>5</integer>", "no date", "<key>note</key>", "y.example"}) {
        EXPECT_NE(bytes.find(kept), std::string::npos) << kept;
    }
}

TEST_P(RuleListTest, ChangesWithoutAFileStayOnTheScreen) {
    open(entry("a.example"));
    std::filesystem::remove(device.path(file()));
    addRule(QStringLiteral("b.example"));
    EXPECT_EQ(shownRules(), list({"a.example", "b.example"}));
    EXPECT_FALSE(std::filesystem::exists(device.path(file())));
}

TEST_P(RuleListTest, ChangesOfOthersSurvive) {
    open(entry("a.example"));
    const std::string foreign =
        GetParam().isGlobal ? "<dict><key>theirs</key><true/></dict>" : "<dict><key>their.app</key><dict/></dict>";
    device.put(file(), foreign);
    addRule(QStringLiteral("b.example"));
    EXPECT_TRUE(device.plist(file())->contains(GetParam().isGlobal ? "theirs" : "their.app"));
    EXPECT_EQ(storedRules(), list({"a.example", "b.example"}));
}

class GlobalListTest : public testing::Test {
protected:
    void launch(const char* globalRules) {
        if (globalRules) device.put(File::globalRules, globalRules);
        device.launch();
    }
    TestDevice device;
};

TEST_F(GlobalListTest, HelpFollowsTheThreeStatesOfItsFile) {
    const struct {
        const char* settings;
        const char* afterFirstHost;  // nullptr: no alert
    } cases[] = {
        {nullptr, ""},
        {"<dict><key>didShowEditAlert</key><true/><key>showAllowHelp</key><true/></dict>", ", which are allowed"},
        {"<dict><key>showAllowHelp</key><false/></dict>", nullptr},
        {"<dict><key>didShowEditAlert</key><true/></dict>", nullptr},
        {"<dict><key>showAllowHelp</key><integer>1</integer></dict>", nullptr},
        {"<array/>", nullptr},
    };
    for (const auto& each : cases) {
        for (const int row : {0, 1}) {
            TestDevice fresh;
            if (each.settings) fresh.put(File::guiSettings, each.settings);
            fresh.launch();
            fresh.tapRow(0, row);
            ASSERT_EQ(fresh.alert() != nullptr, each.afterFirstHost != nullptr) << (each.settings ? each.settings : "");
            if (!each.afterFirstHost) continue;
            EXPECT_EQ(fresh.alert()->title(), QStringLiteral("Global Allow"));
            EXPECT_EQ(fresh.alert()->message(),
                      QStringLiteral("Here you can manually enter hostnames or IPs, for example example.net%1. These "
                                     "rules won't override the rules of an app but will take effect if no "
                                     "app-specific rule for the entered hostname exists. \n If you enter a hostname "
                                     "with an asterix * in front, for example *example.net, all subdomains which "
                                     "contain that hostname will be allowed. According the example: hostnames like "
                                     "static.example.net.")
                          .arg(QString::fromUtf8(each.afterFirstHost)));
            const std::string before = fresh.bytes(File::guiSettings);
            fresh.answer(0);
            EXPECT_EQ(fs::exists(fresh.path(File::guiSettings)), each.settings != nullptr);
            EXPECT_EQ(fresh.bytes(File::guiSettings), before);
            fresh.tap(20, 20);
            fresh.tapRow(0, row);
            fresh.answer(1);
            const auto file = fresh.plist(File::guiSettings);
            EXPECT_EQ(file->find("showAllowHelp")->boolean(), false);
            EXPECT_EQ(file->size(), each.settings ? 2U : 1U) << "what else is in the file stays, and nothing is added";
            fresh.tap(20, 20);
            fresh.tapRow(0, 1 - row);
            EXPECT_EQ(fresh.alert(), nullptr) << "one flag for both lists";
        }
    }
}

// Among them the one whose position is a number that fields have had a meaning for.
TEST_F(GlobalListTest, EditsTheRowThatIsTapped) {
    std::string entries;
    for (int host = 10000; host <= 20000; ++host) entries += entry("r" + std::to_string(host));
    device.put(File::guiSettings, "<dict><key>didShowEditAlert</key><true/></dict>");
    launch(("<dict><key>globalAllow</key><array>" + entries + "</array></dict>").c_str());
    device.tapRow(0, 0);
    auto* screen = qobject_cast<screens::RuleListScreen*>(device.screen());
    const auto toggleEditMode = [&] { device.tap(292, 20); };
    const auto edit = [&](int section, int row, const char* text, const char* stored) {
        SCOPED_TRACE(stored);
        device.tapRow(section, row);
        device.key(Qt::Key_End);
        device.type(QString::fromUtf8(text));
        EXPECT_FALSE(screen->navBarView()->editButton()->isVisible());
        device.key(Qt::Key_Return);
        EXPECT_TRUE(screen->navBarView()->editButton()->isVisible());
        EXPECT_EQ(device.rowTexts(section, row).value(0), QString::fromUtf8(stored));
        const auto rules = device.plist(File::globalRules)->find("globalAllow")->array();
        EXPECT_EQ((*rules)[std::size_t(row)].dictionary()->find("rule")->string(), stored);
    };
    toggleEditMode();
    edit(1, 9999, "+", "r19999+");
    toggleEditMode();
    device.swipeToDelete(1, 9997);
    toggleEditMode();
    edit(1, 9998, "+", "r19999++");
    edit(1, 9999, "+", "r20000+");
    device.tapRow(0, 0);
    device.type(QStringLiteral("r1"));
    device.key(Qt::Key_Return);
    edit(1, 10000, "+", "r20000++");
    device.table()->setContentOffset(0);
    device.tap(100, 40 + 20);
    device.type(QStringLiteral("r"));
    edit(0, 9999, "+", "r19999+++");
}

TEST_F(GlobalListTest, EditModeIsExplainedOnceWhenItsFlagCannotBeKept) {
    device.put(File::guiSettings, "<dict><key>showAllowHelp</key><false/></dict>");
    const std::string before = device.bytes(File::guiSettings);
    const fs::path file = device.path(File::guiSettings);
    for (fs::path folder = file.parent_path(); folder != fs::temp_directory_path(); folder = folder.parent_path())
        fs::permissions(folder, fs::perms::all);
    launch(nullptr);
    fs::permissions(file, fs::perms::none);
    int explained = 0;
    {
        const AnotherPerson somebody;
        for (const int row : {0, 1}) {
            device.tapRow(0, row);
            for (const bool isEditing : {true, false}) {
                device.tap(292, 20);
                if (!device.alert()) continue;
                EXPECT_TRUE(isEditing);
                device.answer(0);
                ++explained;
            }
            device.tap(20, 20);
        }
    }
    EXPECT_EQ(explained, 1);
    fs::permissions(file, fs::perms(0644));
    EXPECT_EQ(device.bytes(File::guiSettings), before);
}

TEST_F(GlobalListTest, DeletesAllAfterConfirmation) {
    device.put(File::guiSettings, "<dict/>");
    launch(("<dict><key>globalDeny</key><array>" + entry("a") + "</array><key>globalAllow</key><array>" + entry("b") +
            "</array></dict>")
               .c_str());
    device.tapRow(0, 1);
    device.tapRow(0, 1);
    EXPECT_EQ(device.alert()->title(), QStringLiteral("Import/Delete"));
    EXPECT_EQ(device.alert()->numberOfButtons(), 3);
    EXPECT_TRUE(device.alert()->isDestructive(2));
    device.answer(2);
    EXPECT_EQ(device.alert()->title(), QStringLiteral("Delete all Rules?"));
    EXPECT_TRUE(device.alert()->isDestructive(1));
    device.answer(0);
    EXPECT_EQ(device.rows(1), 1);
    device.tapRow(0, 1);
    device.answer(2);
    device.answer(1);
    EXPECT_EQ(device.rows(1), 0);
    EXPECT_TRUE(device.plist(File::globalRules)->find("globalDeny")->array()->empty());
    EXPECT_EQ(device.plist(File::globalRules)->find("globalAllow")->array()->size(), 1U);
    EXPECT_TRUE(device.posts().empty());
}

TEST_F(GlobalListTest, ShowsWhatWasImportedInNameOrder) {
    for (const bool isDeny : {false, true}) {
        TestDevice fresh;
        const char* key = isDeny ? "globalDeny" : "globalAllow";
        fresh.put(File::guiSettings, "<dict/>");
        fresh.put(File::globalRules,
                  std::string("<dict><key>") + key + "</key><array>" + entry("m.example") + "</array></dict>");
        fresh.putBytes(fresh.files().listDirectory() / "list.txt", "z.example\na.example");
        fresh.launch();
        fresh.tapRow(0, isDeny ? 1 : 0);
        fresh.tap(210, 40 + 62);
        fresh.tapRow(0, 1);
        fresh.answer(1);
        fresh.tapRow(0, 0);
        fresh.answer(1);
        if (!qobject_cast<screens::RuleListScreen*>(fresh.screen())) fresh.tap(20, 20);
        const auto* screen = qobject_cast<screens::RuleListScreen*>(fresh.screen());
        ASSERT_TRUE(screen);
        EXPECT_EQ(screen->sortBy(), store::RuleOrder::date) << "and yet";
        ASSERT_EQ(fresh.rows(1), 3);
        for (const auto& [row, rule] : {std::pair(0, u"a.example"), {1, u"m.example"}, {2, u"z.example"}})
            EXPECT_EQ(fresh.rowTexts(1, row).value(0), rule);
    }
}

TEST_F(GlobalListTest, DatesReadAsInTheLocale) {
    const QByteArray before = qgetenv("LC_ALL");
    const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createDefault());
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("Asia/Kolkata"));
    const std::pair<const char*, const char*> cases[] = {
        {"en_US.UTF-8", "Jan 1, 2026, 8:34:05 PM"},
        {"de_DE.UTF-8", "01.01.2026, 20:34:05"},
        {"ja_JP.UTF-8", "2026/01/01 20:34:05"},
    };
    for (const auto& [locale, line] : cases) {
        qputenv("LC_ALL", locale);
        TestDevice fresh;
        fresh.put(File::guiSettings, "<dict/>");
        fresh.put(File::globalRules,
                  "<dict><key>globalAllow</key><array><dict><key>date</key><date>2026-01-01T15:04:05Z</date>"
                  "<key>rule</key><string>a</string></dict></array></dict>");
        fresh.launch();
        fresh.tapRow(0, 0);
        // Some versions of the locale data put a narrow space before AM and PM.
        EXPECT_EQ(fresh.rowTexts(1, 0).value(1).replace(QChar(0x202F), u' '), QString::fromUtf8(line)) << locale;
    }
    icu::TimeZone::adoptDefault(zone->clone());
    qputenv("LC_ALL", before);
}

TEST_F(GlobalListTest, EditModeIsExplainedOnceForAllLists) {
    device.install(identifier, "Mail");
    device.put(File::guiSettings, "<dict/>");
    device.put(File::appRules, std::string("<dict><key>") + identifier + "</key><dict/></dict>");
    launch("<dict/>");
    device.tapRow(0, 0);
    device.tap(292, 20);
    ASSERT_TRUE(device.alert());
    device.answer(0);
    device.tap(20, 20);
    device.tapRow(1, 0);
    device.tapRow(2, 0);
    device.tap(292, 20);
    EXPECT_FALSE(device.alert());
    EXPECT_TRUE(qobject_cast<screens::RuleListScreen*>(device.screen())->isEditing());
}

TEST(AppListTest, StartsTheRecordOfAnAppThatHasNone) {
    for (const bool isDeny : {false, true}) {
        TestDevice device;
        device.install(identifier, "Mail");
        device.put(File::guiSettings, "<dict/>");
        device.put(File::appRules, std::string("<dict><key>") + identifier + "</key><dict/></dict>");
        device.launch();
        device.tapRow(1, 0);
        device.put(File::appRules, "<dict><key>their.app</key><dict/></dict>");
        device.tapRow(2, isDeny ? 1 : 0);
        EXPECT_EQ(device.rows(1), 0);
        device.tapRow(0, 0);
        device.type(QStringLiteral("a.example"));
        device.key(Qt::Key_Return);
        const auto file = device.plist(File::appRules);
        ASSERT_TRUE(file->contains(identifier));
        const auto record = file->find(identifier)->dictionary();
        EXPECT_EQ(record->size(), 1U);
        EXPECT_EQ(record->find(isDeny ? "deny" : "allow")->array()->size(), 1U);
        EXPECT_TRUE(file->contains("their.app"));
        EXPECT_EQ(file->find("150")->boolean(), true);
    }
}

TEST_F(GlobalListTest, NeverCreatesItsFile) {
    device.put(File::guiSettings, "<dict/>");
    launch(nullptr);
    device.tapRow(0, 0);
    device.tapRow(0, 0);
    device.type(QStringLiteral("a.example"));
    device.key(Qt::Key_Return);
    EXPECT_EQ(device.rows(1), 1);
    EXPECT_FALSE(std::filesystem::exists(device.path(File::globalRules)));
    device.tap(20, 20);
    device.tapRow(0, 0);
    EXPECT_EQ(device.rows(1), 0);
}

}  // namespace
