// The two file lists: what is listed, and what picking, exporting and deleting do to the files.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "screens/settings/ExportPanel.h"
#include "screens/settings/FileListScreen.h"
#include "store/rules/RuleFile.h"
#include "support/Rules.h"
#include "support/TestDevice.h"

namespace {

namespace fs = std::filesystem;
using store::File;

constexpr File files[] = {File::appRules, File::globalRules, File::guiSettings};
const char* const contents[] = {
    "<dict><key>com.apple.gamed</key><dict/></dict>",
    "<dict><key>log</key><true/><key>unknown</key><real>1.5</real></dict>",
    "<dict><key>didShowEditAlert</key><true/></dict>",
};

struct FileListTest : testing::Test {
    const std::vector<std::string>& content() {
        return qobject_cast<screens::FileListScreen*>(device.screen())->content();
    }
    void pick(int row, int button) {
        device.tapRow(0, row);
        ASSERT_TRUE(device.alert());
        device.answer(button);
    }
    // Where the keyboard is, a first press uncovers the button and a second one presses it.
    void deleteByKeys(int row) {
        pick(row, 0);
        for (int each = 0; each < 2; ++each) QTest::keyClick(device.table(), Qt::Key_Delete);
        QApplication::processEvents();
    }

    TestDevice device;
};

struct ExportTest : FileListTest {
    void open() {
        device.launch();
        device.tapSetting(u"Import/Export Settings");
    }
    void putAll() {
        for (int each = 0; each < 3; ++each) device.put(files[each], contents[each]);
    }
    fs::path folder = device.files().exportDirectory();
};

TEST_F(ExportTest, ListsAllEntriesByTheirBytesAndOpensNone) {
    device.launch();  // removes leftovers, so those of writers at work come after it
    fs::create_directory(folder / "folder");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("nowhere", folder / "link");
    const std::string longest(255, 'x');
    for (const auto& name : {std::string("two\nlines"), std::string("b\xFF"), longest, std::string("a.plist"),
                             std::string(".hidden"), std::string(".a.plist.vxm-abcdefghijkl")})
        device.putBytes(folder / name, "");
    device.tapSetting(u"Import/Export Settings");
    EXPECT_EQ(content(), (std::vector<std::string>{".hidden", "a.plist", "b\xFF", "folder", "link", "pipe",
                                                   "two\nlines", longest}));
    EXPECT_EQ(device.rowTexts(0, 2), list({"b\uFFFD"}));
    EXPECT_EQ(device.rowTexts(0, 6), list({"two\uFFFDlines"}));
}

TEST_F(ExportTest, ReloadShowsWhatIsThereNow) {
    open();
    device.putBytes(folder / "new", "");
    EXPECT_TRUE(content().empty());
    device.tapButton(u"Reload");
    EXPECT_EQ(device.rowTexts(0, 0), list({"new"}));
    fs::remove_all(folder);
    device.tapButton(u"Reload");
    EXPECT_TRUE(content().empty());
}

// In the afternoon of a zone that is not UTC.
TEST_F(ExportTest, ExportsAreNamedByTheLocalTime) {
    const int hour = QDateTime::currentDateTimeUtc().time().hour();
    const int hoursWest = hour == 15 ? -1 : hour - 15;
    qputenv("TZ", "TEST" + QByteArray::number(hoursWest));
    open();
    const QDateTime before = QDateTime::currentDateTime().addMSecs(-999);
    device.tapButton(u"Export");
    const QString name = QString::fromStdString(content().front());
    const auto named = QDateTime::fromString(name, QStringLiteral("'VxmSettings-'yyyy-MM-dd_HH-mm-ss'.plist'"));
    EXPECT_TRUE(before <= named && named <= QDateTime::currentDateTime()) << name.toStdString();
    qunsetenv("TZ");
}

TEST_F(ExportTest, WhatCanBeReadIsExportedAndImportedAgain) {
    const std::array<bool, 3> cases[] = {{true, true, true}, {true, false, true}, {false, true, false}, {}};
    for (const auto& isThere : cases) {
        fs::remove_all(folder);
        fs::create_directory(folder);
        open();
        for (int each = 0; each < 3; ++each) device.put(files[each], isThere.at(each) ? contents[each] : "<array/>");
        device.tapButton(u"Export");
        const auto count = std::size_t(std::ranges::count(isThere, true));
        ASSERT_EQ(content().size(), count > 0 ? 1U : 0U);
        if (count == 0) continue;
        EXPECT_EQ(store::readRuleFile(folder / content().front())->size(), count);

        for (const File file : files) fs::remove(device.path(file));
        pick(0, 1);
        for (int each = 0; each < 3; ++each) ASSERT_EQ(device.files().exists(files[each]), isThere.at(each));
        EXPECT_TRUE(!isThere[0] || device.plist(File::appRules)->contains("com.apple.gamed"));
        EXPECT_TRUE(!isThere[1] || device.plist(File::globalRules)->find("unknown")->real() == 1.5);
        EXPECT_TRUE(!isThere[2] || !device.plist(File::guiSettings)->contains("150"));
    }
    EXPECT_TRUE(device.posts().empty());
}

TEST_F(ExportTest, ExplanationCanBeCopied) {
    open();
    auto* explanation = device.screen()->view()->findChild<screens::ExportPanel*>()->explanation();
    QTest::mouseClick(explanation, Qt::LeftButton, {}, {100, 20});
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_C}) QTest::keyClick(explanation, key, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), explanation->text());
}

TEST_F(ExportTest, ImportReplacesOnlyWhatTheFileHolds) {
    const std::tuple<const char*, int, std::array<bool, 3>> cases[] = {
        {"<dict><key>appRules</key><dict/><key>globalRules</key><dict/></dict>", 1, {true, true, false}},
        {"<dict><key>appRules</key><dict/></dict>", 0, {}},
        {"<dict><key>appRules</key><array/><key>settings</key><dict/></dict>", 1, {false, false, true}},
        {"<array/>", 1, {}},
    };
    for (const auto& [content, button, replaced] : cases) {
        putAll();
        device.putBytes(folder / "picked", std::string("<plist>") + content + "</plist>");
        open();
        device.tapRow(0, 0);
        EXPECT_TRUE(device.alert()->isDestructive(1)) << "what was there would be overwritten";
        device.answer(button);
        for (int each = 0; each < 3; ++each)
            EXPECT_EQ(device.plist(files[each])->empty(), replaced.at(each)) << content;
    }
    EXPECT_TRUE(device.posts().empty());
}

TEST_F(ExportTest, DeletesTheEntryAndNothingBehindALink) {
    const fs::path outside = device.device().root / "outside";
    device.putBytes(outside, "kept");
    fs::create_directory(folder / "a-folder");
    fs::create_directory_symlink(outside.parent_path(), folder / "a-folder" / "link");
    fs::create_directory_symlink(outside.parent_path(), folder / "b-link");
    for (const char* name : {"c\n\xFF", "d-kept"}) device.putBytes(folder / name, "");
    open();
    for (int each = 0; each < 3; ++each) deleteByKeys(0);
    EXPECT_EQ(content(), std::vector<std::string>{"d-kept"});
    EXPECT_EQ(device.rowTexts(0, 0), list({"d-kept"}));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
    EXPECT_EQ(TestDevice::bytes(outside), "kept");
}

struct HostListImportTest : FileListTest {
    void open(bool isDeny) {
        device.put(File::guiSettings, "<dict/>");
        device.launch();
        device.tapRow(0, isDeny ? 1 : 0);
        device.tapRow(u"Import | Delete All");
        device.answer(1);
    }
    fs::path hostList = device.files().listDirectory() / "list.txt";
};

TEST_F(HostListImportTest, AppendsToTheListOfItsKind) {
    using Bytes = std::optional<std::string>;  // none: no file
    const std::tuple<bool, int, Bytes, QStringList, QStringList, bool> cases[] = {
        {false, 1, "alpha.example\nbeta.example\n", list({"old", "alpha.example", "beta.example", ""}), {}, true},
        {true, 1, "ads .example .net", list({"old"}), list({"ads.example.net"}), true},
        {false, 0, "alpha.example", list({"old"}), {}, false},
        {false, 1, std::nullopt, list({"old"}), {}, true},
        {true, 1, std::nullopt, list({"old"}), {}, true},
        {true, 1, std::string("\0\1", 2), list({"old"}), {}, true},
    };
    for (const auto& [isDeny, button, bytes, allow, deny, isWritten] : cases) {
        device.put(File::globalRules, rulesFile("globalAllow", entry("old")));
        fs::remove_all(hostList);
        bytes ? device.putBytes(hostList, *bytes) : void(fs::create_directory(hostList));
        open(isDeny);
        device.tapRow(0, 0);
        EXPECT_FALSE(device.alert()->isDestructive(1)) << "it adds";
        device.answer(button);
        const auto lists = device.plist(File::globalRules);
        EXPECT_EQ(rulesIn(*lists, "globalAllow"), allow);
        EXPECT_EQ(rulesIn(*lists, "globalDeny"), deny);
        EXPECT_EQ(lists->contains("globalDeny"), isDeny);
        EXPECT_EQ(lists->contains("150"), isWritten);
    }
    EXPECT_TRUE(device.posts().empty());
}

TEST_F(HostListImportTest, ListFilesCannotBeDeletedAndRulesFilesAreNotMade) {
    device.putBytes(hostList, "alpha.example");
    open(false);
    deleteByKeys(0);
    EXPECT_TRUE(fs::exists(hostList));
    pick(0, 1);
    EXPECT_FALSE(device.files().exists(File::globalRules));
}

}  // namespace
