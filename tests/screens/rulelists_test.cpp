// The rule lists of all apps and of one app, used as a person uses them, with the files after every step.
#include <gtest/gtest.h>
#include <unicode/timezone.h>

#include <algorithm>

#include "platform/ui/controls/ImageButton.h"
#include "platform/ui/controls/TextField.h"
#include "platform/ui/search/SearchDisplayController.h"
#include "screens/rules/RuleListHeader.h"
#include "screens/rules/RuleListScreen.h"
#include "screens/rules/SortSelector.h"
#include "support/Rules.h"
#include "support/TestDevice.h"
#include "support/Unreadable.h"
#include "views/IconView.h"
#include "views/VxmNavBarView.h"
#include "views/VxmRuleCell.h"

namespace {

namespace fs = std::filesystem;
using platform::TextField;
using store::File;

constexpr const char* identifier = "org.example.Mail";

screens::RuleListScreen* screenOf(const TestDevice& device) {
    return qobject_cast<screens::RuleListScreen*>(device.screen());
}

QStringList globalRules(const TestDevice& device, const char* key = "globalAllow") {
    return rulesIn(*device.plist(File::globalRules), key);
}

void tapEdit(TestDevice& device) {
    device.tap(292, 20);
}

void addRule(TestDevice& device, const QString& text) {
    device.tapRow(0, 0);
    device.type(text);
    device.key(Qt::Key_Return);
}

// Where a list is kept and how a person gets to it.
struct Place {
    const char* name;
    bool isGlobal;
    bool isDeny;
    const char* key;
    const char* otherKey;
};

constexpr Place places[] = {
    {"GlobalAllow", true, false, "globalAllow", "globalDeny"},
    {"GlobalDeny", true, true, "globalDeny", "globalAllow"},
    {"AppAllow", false, false, "allow", "deny"},
    {"AppDeny", false, true, "deny", "allow"},
};

struct RuleListTest : testing::TestWithParam<Place> {
    // Puts the list into its file, next to a list and a key that are none of the screen's business, and opens it.
    void open(const std::string& entries) {
        const std::string lists = std::string("<dict><key>") + key + "</key><array>" + entries + "</array><key>" +
                                  GetParam().otherKey + "</key><array>" + entry("other") +
                                  "</array><key>own</key><integer>7</integer></dict>";
        device.install(identifier, "Mail");
        device.put(file, isGlobal ? lists : std::string("<dict><key>") + identifier + "</key>" + lists + "</dict>");
        device.put(File::guiSettings, "<dict><key>showAllowHelp</key><false/></dict>");
        device.launch();
        openList();
    }

    void openList() {
        if (!isGlobal) device.tapRow(1, 0);
        device.tapRow(isGlobal ? 0 : 2, GetParam().isDeny ? 1 : 0);
    }
    void openAgain() {
        for (int step = 0; step < (isGlobal ? 1 : 2); ++step) device.tap(20, 20);
        openList();
    }
    void sort(bool byDate) { device.tap(byDate ? 210 : 110, 40 + 62); }

    store::Dictionary stored() {
        const auto whole = device.plist(file);
        return isGlobal ? *whole : *whole->find(identifier)->dictionary();
    }
    QStringList storedRules() { return rulesIn(stored(), key); }
    // Shown and stored.
    void expectRules(const QStringList& rules, const char* why = "") {
        EXPECT_EQ(device.titles(1), rules) << why;
        EXPECT_EQ(storedRules(), rules) << why;
    }

    void expectTheRestIsUntouched() {
        EXPECT_EQ(rulesIn(stored(), GetParam().otherKey), list({"other"}));
        EXPECT_TRUE(stored().contains("own"));
        EXPECT_TRUE(device.posts().empty());
    }

    TestDevice device;
    const bool isGlobal = GetParam().isGlobal;
    const File file = isGlobal ? File::globalRules : File::appRules;
    const char* const key = GetParam().key;
};

INSTANTIATE_TEST_SUITE_P(Places, RuleListTest, testing::ValuesIn(places),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_P(RuleListTest, AddsARuleInLowerCaseInItsPlace) {
    open(entry("z.example") + entry("a.example") + entry("z.example", 5));
    EXPECT_EQ(device.titles(1), list({"a.example", "z.example"})) << "in name order, without duplicates";
    EXPECT_EQ(storedRules().size(), 3) << "showing writes nothing";
    addRule(device, QStringLiteral("*M<&.Example:80"));
    EXPECT_EQ(device.alert(), nullptr);
    expectRules(list({"*m<&.example:80", "a.example", "z.example"}));
    EXPECT_EQ(device.plist(file)->find("150")->boolean(), true);
    EXPECT_FALSE(stored().contains("150") && !isGlobal) << "the marker stands at the top level";
    expectTheRestIsUntouched();

    addRule(device, QStringLiteral("a.example"));
    expectRules(list({"*m<&.example:80", "a.example", "a.example", "z.example"}));
    openAgain();
    EXPECT_EQ(device.titles(1), list({"*m<&.example:80", "a.example", "z.example"}));
}

TEST_P(RuleListTest, CancelledAndEmptyAddsStoreNothing) {
    open(entry("a.example"));
    const std::string before = device.bytes(file);
    device.tapRow(0, 0);
    const auto* field = qobject_cast<TextField*>(QApplication::focusWidget());
    ASSERT_TRUE(field);
    EXPECT_EQ(field->geometry(), QRect(16, 84, 252, 25));
    EXPECT_EQ(field->font().pixelSize(), 17);
    EXPECT_EQ(field->inputMethodHints(), Qt::ImhUrlCharactersOnly | Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText);
    EXPECT_TRUE(field->isClearButtonEnabled());
    const auto images = device.alert()->findChildren<views::IconView*>();
    const auto background = std::ranges::find(images, QRect(11, 80, 262, 31), &QWidget::geometry);
    ASSERT_NE(background, images.end());
    const QImage frame = (*background)->grab().toImage();
    EXPECT_NE(frame.pixel(261, 15), frame.pixel(130, 15)) << "the line around the field should reach its right end";
    device.type(QStringLiteral("x"));
    device.answer(0);
    addRule(device, {});
    EXPECT_EQ(device.bytes(file), before);
    EXPECT_EQ(device.titles(1), list({"a.example"}));
}

TEST_P(RuleListTest, DeletesTheSwipedRule) {
    open(entry("a.example") + entry("b.example", 0, "<key>note</key><string>kept</string>") + entry("c.example"));
    for (int each = 0; each < 2; ++each) {
        EXPECT_EQ(device.titles(1).size(), 3 - each);
        // The row above the rules is none of them.
        device.swipeToDelete(1 - each, 0);
        expectRules(list({"b.example", "c.example"}));
    }
    EXPECT_EQ((*stored().find(key)->array())[0].dictionary()->find("note")->string(), "kept");
    expectTheRestIsUntouched();
}

TEST_P(RuleListTest, EditsInPlaceOnlyInEditMode) {
    open(entry("a.example") + entry("b.example") + entry("c.example"));
    const auto editButton = screenOf(device)->navBarView()->editButton();
    const auto isEdited = [] { return qobject_cast<TextField*>(QApplication::focusWidget()) != nullptr; };
    device.tapRow(1, 1);
    EXPECT_FALSE(isEdited());

    tapEdit(device);
    ASSERT_TRUE(device.alert());
    EXPECT_EQ(device.plist(File::guiSettings)->find("didShowEditAlert")->boolean(), true);
    device.answer(0);

    device.tapRow(1, 1);
    ASSERT_TRUE(isEdited());
    EXPECT_FALSE(editButton->isVisible());
    EXPECT_EQ(QApplication::focusWidget()->inputMethodHints(), Qt::ImhNone);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    device.type(QStringLiteral("Z.Example"));
    device.key(Qt::Key_Return);
    EXPECT_FALSE(isEdited()) << "nobody else takes the key";
    EXPECT_TRUE(editButton->isVisible());
    expectRules(list({"a.example", "z.example", "c.example"}), "an edit does not sort");
    expectTheRestIsUntouched();

    device.tapRow(0, 0);
    EXPECT_TRUE(device.alert()) << "the rows above the rules work in edit mode";
    device.answer(0);
    tapEdit(device);
    EXPECT_FALSE(device.alert()) << "the explanation is given once";
    EXPECT_FALSE(screenOf(device)->isEditing());

    addRule(device, QStringLiteral("d.example"));
    expectRules(list({"a.example", "c.example", "d.example", "z.example"}), "an addition does");
}

// Keys go to the active window alone; a finger or assistance also reaches one that is not.
enum class Person { stays, leaves, isElsewhere };

// A long list whose first rule is half typed.
class HalfTypedRule {
public:
    explicit HalfTypedRule(Person person) {
        std::string entries;
        for (int host = 10; host < 60; ++host) entries += entry("host" + std::to_string(host), host);
        device.put(File::globalRules, rulesFile("globalAllow", entries));
        device.put(File::guiSettings, "<dict><key>didShowEditAlert</key><true/></dict>");
        device.launch();
        device.tapRow(0, 0);
        tapEdit(device);
        if (person == Person::isElsewhere) leave();
        device.tapRow(1, 0, 60);
        QTest::keyClick(device.window()->focusWidget(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(device.window()->focusWidget(), QStringLiteral("New"));
        if (person == Person::leaves) leave();
    }

    TestDevice device;

private:
    void leave() {
        elsewhere.show();
        elsewhere.activateWindow();
        QApplication::processEvents();
        EXPECT_FALSE(device.window()->isActiveWindow());
    }
    QWidget elsewhere;
};

void sortByAssistance(TestDevice& device) {
    platform::ImageButton* date = screenOf(device)->header()->sortSelector()->button(1);
    QAccessible::queryAccessibleInterface(date)->actionInterface()->doAction(
        QAccessibleActionInterface::toggleAction());
}

void askToReturn(TestDevice& device) {
    auto* field = qobject_cast<TextField*>(device.window()->focusWidget());
    EXPECT_TRUE(screenOf(device)->shouldReturn(*field));
    EXPECT_FALSE(field->isFirstResponder());
}

TEST(HalfTypedRuleTest, GoesIntoItsOwnRowWhateverEndsTheEditing) {
    const std::tuple<const char*, void (*)(TestDevice&), bool> endings[] = {
        {"tap on another row", [](TestDevice& device) { device.tapRow(1, 2); }, false},
        {"back", [](TestDevice& device) { device.tap(20, 20); }, false},
        {"scroll", [](TestDevice& device) { device.table()->setContentOffset(100000); }, false},
        {"deletion of another row", [](TestDevice& device) { device.swipeToDelete(1, 3); }, false},
        {"sort by assistance", sortByAssistance, false},
        {"return", askToReturn, false},
        {"back key", [](TestDevice& device) { device.key(Qt::Key_Back); }, true},
        {"escape", [](TestDevice& device) { device.key(Qt::Key_Escape); }, true},
    };
    for (const auto& [name, end, isByKey] : endings) {
        for (const Person person : {Person::stays, Person::leaves, Person::isElsewhere}) {
            if (isByKey && person != Person::stays) continue;
            SCOPED_TRACE(testing::Message() << name << ", " << int(person));
            HalfTypedRule half(person);
            end(half.device);
            QApplication::processEvents();
            const QStringList rules = globalRules(half.device);
            EXPECT_EQ(rules.mid(0, 2), list({"new", "host11"}));
            EXPECT_EQ(rules.count(u"new"), 1);
        }
    }
}

TEST(HalfTypedRuleTest, IsOutOfReachUnderAnAlert) {
    HalfTypedRule half(Person::stays);
    half.device.tapRow(0, 0);
    auto* cell = static_cast<views::VxmRuleCell*>(half.device.table()->cellForRow({1, 1}));
    QAccessibleInterface* field = QAccessible::queryAccessibleInterface(cell->titleTextField());
    field->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    field->editableTextInterface()->replaceText(0, 1, QStringLiteral("x"));
    EXPECT_FALSE(cell->titleTextField()->isFirstResponder());
    EXPECT_EQ(globalRules(half.device).value(1), u"host11");
}

TEST(HalfTypedRuleTest, GoesWithTheApp) {
    for (const int way : {1, 2, 3}) {
        for (const Person person : {Person::stays, Person::leaves}) {
            SCOPED_TRACE(testing::Message() << way << ", " << int(person));
            HalfTypedRule half(person);
            if (way & 1) half.device.window()->close();
            if (way & 2) half.device.terminate();
            QApplication::processEvents();
            EXPECT_EQ(globalRules(half.device).value(0), u"host10") << "at termination no file is written";
        }
    }
}

TEST_P(RuleListTest, SearchNarrowsDeletesAndEditsWhateverEndsIt) {
    open(entry("ads.example") + entry("b.example") + entry("static.ads.example") + entry("z.example"));
    const auto search = [this](const char* text) {
        device.tap(100, 40 + 20);
        device.type(QString::fromUtf8(text));
    };
    search("ADS");
    EXPECT_EQ(device.titles(0), list({"ads.example", "static.ads.example"}));
    device.swipeToDelete(0, 0);
    EXPECT_EQ(device.titles(0), list({"static.ads.example"}));
    EXPECT_EQ(storedRules(), list({"b.example", "static.ads.example", "z.example"}));

    tapEdit(device);
    if (device.alert()) device.answer(0);
    auto* controller = screenOf(device)->searchController();
    const std::pair<const char*, std::function<void()>> ends[] = {
        {"Return", [&] { device.key(Qt::Key_Return); }},
        {"Clear", [&] { device.tapButton(u"Clear"); }},
        {"Cancel", [&] { device.tapButton(u"Cancel"); }},
        {"another text", [&] { controller->searchBar()->setText(QStringLiteral("b.")); }},
    };
    std::string edited = "static.ads.example";
    for (const auto& [name, end] : ends) {
        SCOPED_TRACE(name);
        device.tapRow(0, 0);
        device.key(Qt::Key_End);
        device.type(QStringLiteral("+"));
        end();
        edited += "+";
        EXPECT_EQ(storedRules(), list({"b.example", edited.c_str(), "z.example"}));
        controller->setActive(false, false);
        EXPECT_EQ(device.titles(1), storedRules());
        search("static");
    }
    expectTheRestIsUntouched();
}

TEST_P(RuleListTest, SortsByDateNewestFirstWithoutWriting) {
    open(entry("a.example", 1) + entry("b.example", 3) + entry("c.example", 2));
    const std::string before = device.bytes(file);
    sort(true);
    const auto* header = screenOf(device)->header();
    EXPECT_EQ(device.titles(1), list({"b.example", "c.example", "a.example"}));
    EXPECT_FALSE(header->searchBar()->isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return header->sortSelector()->button(1)->isHighlighted(); }, 200));
    EXPECT_EQ(device.bytes(file), before);

    for (const char16_t* rule : {u"m.example", u"n.example"}) addRule(device, QString::fromUtf16(rule));
    const QStringList newestFirst = list({"n.example", "m.example", "b.example", "c.example", "a.example"});
    EXPECT_EQ(device.titles(1), newestFirst) << "also within the second that a date is cut to";
    EXPECT_EQ(storedRules(), newestFirst) << "a write stores the order that is shown";

    openAgain();
    sort(true);
    EXPECT_EQ(device.titles(1), newestFirst) << "as far as the order of the file can tell";
    sort(false);
    EXPECT_EQ(device.titles(1), list({"a.example", "b.example", "c.example", "m.example", "n.example"}));
    EXPECT_TRUE(screenOf(device)->header()->searchBar()->isVisible());
}

TEST_P(RuleListTest, ChangesStartFromTheFileAsItIsNow) {
    open(entry("a.example"));
    device.put(file, "<dict><key>theirs</key><dict/></dict>");
    addRule(device, QStringLiteral("b.example"));
    EXPECT_TRUE(device.plist(file)->contains("theirs"));
    EXPECT_EQ(storedRules(), list({"a.example", "b.example"}));
    EXPECT_EQ(stored().size(), isGlobal ? 3U : 1U);
    fs::remove(device.path(file));
    addRule(device, QStringLiteral("c.example"));
    EXPECT_EQ(device.titles(1), list({"a.example", "b.example", "c.example"}));
    EXPECT_FALSE(fs::exists(device.path(file))) << "it is never created";
}

struct GlobalListTest : testing::Test {
    void open(int row, const std::string& globalRules, const char* settings = "<dict/>") {
        device.put(File::guiSettings, settings);
        device.put(File::globalRules, globalRules);
        device.launch();
        device.tapRow(0, row);
    }
    TestDevice device;
};

TEST_F(GlobalListTest, HelpFollowsTheThreeStatesOfItsFile) {
    const std::pair<const char*, bool> cases[] = {
        {nullptr, true},
        {"<dict><key>didShowEditAlert</key><true/><key>showAllowHelp</key><true/></dict>", true},
        {"<dict><key>showAllowHelp</key><false/></dict>", false},
        {"<dict><key>didShowEditAlert</key><true/></dict>", false},
    };
    for (const auto& [settings, helps] : cases) {
        for (const int row : {0, 1}) {
            SCOPED_TRACE(settings ? settings : "none");
            fs::remove(device.path(File::guiSettings));
            if (settings) device.put(File::guiSettings, settings);
            device.launch();
            device.tapRow(0, row);
            ASSERT_EQ(device.alert() != nullptr, helps);
            if (!helps) continue;
            const std::string before = device.bytes(File::guiSettings);
            device.answer(0);
            EXPECT_EQ(device.bytes(File::guiSettings), before);
            device.tap(20, 20);
            device.tapRow(0, row);
            device.answer(1);
            const auto file = device.plist(File::guiSettings);
            EXPECT_EQ(file->find("showAllowHelp")->boolean(), false);
            EXPECT_EQ(file->size(), settings ? 2U : 1U) << "what else is in the file stays, and nothing is added";
            device.tap(20, 20);
            device.tapRow(0, 1 - row);
            EXPECT_EQ(device.alert(), nullptr) << "one flag for both lists";
        }
    }
}

// Among them the one whose position is a number that fields have had a meaning for.
TEST_F(GlobalListTest, EditsTheRowThatIsTapped) {
    std::string entries;
    for (int host = 10000; host <= 20000; ++host) entries += entry("r" + std::to_string(host));
    open(0, rulesFile("globalAllow", entries), "<dict><key>didShowEditAlert</key><true/></dict>");
    const auto edit = [&](int section, int row, const char* stored) {
        SCOPED_TRACE(stored);
        device.tapRow(section, row);
        device.key(Qt::Key_End);
        device.type(QStringLiteral("+"));
        device.key(Qt::Key_Return);
        EXPECT_EQ(device.rowTexts(section, row).value(0), QString::fromUtf8(stored));
        EXPECT_EQ(globalRules(device).value(row), QString::fromUtf8(stored));
    };
    tapEdit(device);
    edit(1, 9999, "r19999+");
    tapEdit(device);
    device.swipeToDelete(1, 9997);
    tapEdit(device);
    edit(1, 9998, "r19999++");
    addRule(device, QStringLiteral("r1"));
    edit(1, 10000, "r20000+");
    device.table()->setContentOffset(0);
    device.tap(100, 40 + 20);
    device.type(QStringLiteral("r"));
    edit(0, 9999, "r19999+++");
}

TEST_F(GlobalListTest, EditModeIsExplainedOnceWhenItsFlagCannotBeKept) {
    device.put(File::guiSettings, "<dict><key>showAllowHelp</key><false/></dict>");
    const std::string before = device.bytes(File::guiSettings);
    device.launch();
    int explained = 0;
    {
        const Unreadable flags(device.path(File::guiSettings));
        for (const int row : {0, 1}) {
            device.tapRow(0, row);
            tapEdit(device);
            if (device.alert()) {
                device.answer(0);
                ++explained;
            }
            tapEdit(device);
            device.tap(20, 20);
        }
    }
    EXPECT_EQ(explained, 1);
    EXPECT_EQ(device.bytes(File::guiSettings), before);
}

TEST_F(GlobalListTest, DeletesAllAfterConfirmation) {
    open(1, "<dict><key>globalDeny</key><array>" + entry("a") + "</array><key>globalAllow</key><array>" + entry("b") +
                "</array></dict>");
    for (const bool isConfirmed : {false, true}) {
        device.tapRow(0, 1);
        EXPECT_TRUE(device.alert()->isDestructive(2));
        device.answer(2);
        EXPECT_TRUE(device.alert()->isDestructive(1));
        device.answer(isConfirmed ? 1 : 0);
        EXPECT_EQ(device.rows(1), isConfirmed ? 0 : 1);
        EXPECT_EQ(globalRules(device, "globalDeny").size(), isConfirmed ? 0 : 1);
    }
    EXPECT_TRUE(device.plist(File::globalRules)->contains("globalDeny"));
    EXPECT_EQ(globalRules(device).size(), 1);
    EXPECT_TRUE(device.posts().empty());
}

TEST_F(GlobalListTest, ShowsWhatWasImportedInNameOrder) {
    device.putBytes(device.files().listDirectory() / "list.txt", "z.example\na.example");
    open(1, rulesFile("globalDeny", entry("m.example")));
    device.tap(210, 40 + 62);
    device.tapRow(0, 1);
    device.answer(1);
    device.tapRow(0, 0);
    device.answer(1);
    device.tap(20, 20);
    ASSERT_TRUE(screenOf(device));
    EXPECT_EQ(screenOf(device)->sortBy(), store::RuleOrder::date) << "and yet";
    EXPECT_EQ(device.titles(1), list({"a.example", "m.example", "z.example"}));
}

TEST_F(GlobalListTest, DatesReadAsInTheLocale) {
    const QByteArray before = qgetenv("LC_ALL");
    const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createDefault());
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("Asia/Kolkata"));
    const std::pair<const char*, const char*> cases[] = {
        {"en_US.UTF-8", "Jan 1, 2026, 3:34:00 PM"},
        {"de_DE.UTF-8", "01.01.2026, 15:34:00"},
        {"ja_JP.UTF-8", "2026/01/01 15:34:00"},
    };
    for (const auto& [locale, line] : cases) {
        qputenv("LC_ALL", locale);
        open(0, rulesFile("globalAllow", entry("a", 4)));
        // Some versions of the locale data put a narrow space before AM and PM.
        EXPECT_EQ(device.rowTexts(1, 0).value(1).replace(QChar(0x202F), u' '), QString::fromUtf8(line)) << locale;
    }
    icu::TimeZone::adoptDefault(zone->clone());
    qputenv("LC_ALL", before);
}

}  // namespace
