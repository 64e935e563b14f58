// The two file lists: what is listed, and what picking, exporting and deleting do to the files.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QClipboard>
#include <QDateTime>
#include <QLabel>

#include "screens/ScreenHost.h"
#include "screens/settings/ExportPanel.h"
#include "screens/settings/VxmGlobalImportViewController.h"
#include "screens/settings/VxmImportExportViewController.h"
#include "store/rules/RuleFile.h"
#include "views/VxmFileCell.h"

namespace {

namespace fs = std::filesystem;
using store::File;

const std::string appRules = "<dict><key>150</key><true/><key>org.example.Mail</key><dict/></dict>";
const std::string globalRules = "<dict><key>log</key><true/><key>unknown</key><real>1.5</real></dict>";
const std::string guiSettings = "<dict><key>didShowEditAlert</key><true/></dict>";

class ExportTest : public testing::Test {
protected:
    screens::VxmImportExportViewController* open() { return host.show<screens::VxmImportExportViewController>(); }
    fs::path file(const std::string& name) const { return host.store.exportDirectory() / name; }
    QString title(int row) const { return static_cast<views::VxmFileCell*>(host.cell({0, row}))->titleLabel()->text(); }

    void pick(int row, int button) {
        host.tapRow({0, row});
        ASSERT_TRUE(host.alert());
        host.answer(button);
    }

    ScreenHost host;
};

TEST_F(ExportTest, ListsAllEntriesByTheirBytesAndOpensNone) {
    fs::create_directory(file("folder"));
    ASSERT_EQ(mkfifo(file("pipe").c_str(), 0600), 0);
    fs::create_symlink("nowhere", file("link"));
    const std::string names[] = {"two\nlines", "b\xFF",   std::string(255, 'x'),
                                 "a.plist",    ".hidden", ".a.plist.vxm-abcdefghijkl"};
    for (const auto& name : names) ScreenHost::put(file(name), "");
    const auto* screen = open();
    EXPECT_EQ(screen->content(), (std::vector<std::string>{".hidden", "a.plist", "b\xFF", "folder", "link", "pipe",
                                                           "two\nlines", std::string(255, 'x')}));
    EXPECT_EQ(title(2), QStringLiteral("b\uFFFD"));
    EXPECT_EQ(title(6), QStringLiteral("two\uFFFDlines"));
}

TEST_F(ExportTest, ReloadShowsWhatIsThereNow) {
    const auto* screen = open();
    ScreenHost::put(file("new"), "");
    EXPECT_TRUE(screen->content().empty());
    host.tapButton(QStringLiteral("Reload"));
    EXPECT_EQ(title(0), u"new");
    fs::remove_all(host.store.exportDirectory());
    host.tapButton(QStringLiteral("Reload"));
    EXPECT_TRUE(screen->content().empty());
}

// In the afternoon of a zone that is not UTC.
TEST_F(ExportTest, ExportsAreNamedByTheLocalTime) {
    const int hour = QDateTime::currentDateTimeUtc().time().hour();
    const int hoursWest = hour == 15 ? -1 : hour - 15;
    qputenv("TZ", "TEST" + QByteArray::number(hoursWest));
    host.put(File::appRules, appRules);
    const auto* screen = open();
    const QDateTime before = QDateTime::currentDateTime().addMSecs(-999);
    host.tapButton(QStringLiteral("Export"));
    const QString name = QString::fromStdString(screen->content().front());
    const auto named = QDateTime::fromString(name, QStringLiteral("'VxmSettings-'yyyy-MM-dd_HH-mm-ss'.plist'"));
    EXPECT_TRUE(before <= named && named <= QDateTime::currentDateTime()) << name.toStdString();
    qunsetenv("TZ");
}

TEST_F(ExportTest, ExportsWhatCanBeRead) {
    const struct {
        bool app, global, settings;
    } cases[] = {{true, true, true}, {true, false, true}, {false, true, false}, {false, false, false}};
    for (const auto& each : cases) {
        ScreenHost fresh;
        if (each.app) fresh.put(File::appRules, appRules);
        if (each.global) fresh.put(File::globalRules, globalRules);
        if (each.settings) fresh.put(File::guiSettings, guiSettings);
        if (!each.global) fresh.put(File::globalRules, "<array/>");
        auto* screen = fresh.show<screens::VxmImportExportViewController>();
        fresh.tapButton(QStringLiteral("Export"));
        const std::size_t count = std::size_t(each.app) + std::size_t(each.global) + std::size_t(each.settings);
        ASSERT_EQ(screen->content().size(), count > 0 ? 1U : 0U);
        EXPECT_TRUE(fresh.posts.empty());
        if (count == 0) continue;

        const std::string name = screen->content().front();
        // Read back into an empty device, the files are what they were.
        ScreenHost other;
        fs::copy(fresh.store.exportDirectory() / name, other.store.exportDirectory() / name);
        other.show<screens::VxmImportExportViewController>();
        other.tapRow({0, 0});
        other.answer(1);
        const auto all = store::readRuleFile(other.store.exportDirectory() / name);
        ASSERT_TRUE(all);
        EXPECT_EQ(all->size(), count);
        EXPECT_EQ(other.store.exists(File::appRules), each.app);
        EXPECT_EQ(other.store.exists(File::globalRules), each.global);
        EXPECT_EQ(other.store.exists(File::guiSettings), each.settings);
        if (each.app) {
            EXPECT_TRUE(other.store.read(File::appRules)->contains("org.example.Mail"));
        }
        if (each.global) {
            EXPECT_EQ(other.store.read(File::globalRules)->find("unknown")->real(), 1.5);
        }
        if (each.settings) {
            EXPECT_FALSE(other.store.read(File::guiSettings)->contains("150"));
        }
        EXPECT_TRUE(other.posts.empty());
    }
}

TEST_F(ExportTest, ExplanationCanBeCopied) {
    auto* explanation = open()->view()->findChild<screens::ExportPanel*>()->explanation();
    QTest::mouseClick(explanation, Qt::LeftButton, {}, {100, 20});
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_C}) QTest::keyClick(explanation, key, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), explanation->text());
}

TEST_F(ExportTest, ImportReplacesOnlyWhatTheFileHolds) {
    const struct {
        const char* what;
        std::string content;
        int button;
        bool app, global, settings;  // replaced
    } cases[] = {
        {"all", "<dict><key>appRules</key><dict/><key>globalRules</key><dict/><key>settings</key><dict/></dict>", 1,
         true, true, true},
        {"cancelled", "<dict><key>appRules</key><dict/></dict>", 0, false, false, false},
        {"settings alone", "<dict><key>settings</key><dict/></dict>", 1, false, false, true},
        {"wrong types",
         "<dict><key>appRules</key><array/><key>globalRules</key><string/><key>settings</key><dict/></dict>", 1, false,
         false, true},
        {"other keys", "<dict><key>rules</key><dict/></dict>", 1, false, false, false},
        {"no dictionary", "<array/>", 1, false, false, false},
        {"text", "hello", 1, false, false, false},
        {"nothing", "", 1, false, false, false},
    };
    for (const auto& each : cases) {
        host.put(File::appRules, appRules);
        host.put(File::globalRules, globalRules);
        host.put(File::guiSettings, guiSettings);
        ScreenHost::put(file("picked"), each.content);
        open();
        pick(0, each.button);
        EXPECT_EQ(host.store.read(File::appRules)->empty(), each.app) << each.what;
        EXPECT_EQ(host.store.read(File::globalRules)->empty(), each.global) << each.what;
        EXPECT_EQ(host.store.read(File::guiSettings)->empty(), each.settings) << each.what;
        EXPECT_TRUE(host.posts.empty());
    }
}

TEST_F(ExportTest, PickingWhatIsNoFileChangesNothing) {
    fs::create_directory(file("folder"));
    ASSERT_EQ(mkfifo(file("pipe").c_str(), 0600), 0);
    ScreenHost::put(file("zeros"), "");
    fs::resize_file(file("zeros"), 1U << 30);
    host.put(File::appRules, appRules);
    const std::string before = ScreenHost::bytes(host.store.path(File::appRules));
    open();
    for (const int row : {0, 1, 2}) pick(row, 1);
    EXPECT_EQ(ScreenHost::bytes(host.store.path(File::appRules)), before);
    EXPECT_FALSE(host.store.exists(File::globalRules));
}

TEST_F(ExportTest, QuestionNamesTheFile) {
    ScreenHost::put(file("my settings.plist"), "");
    const auto* screen = open();
    host.tapRow({0, 0});
    EXPECT_EQ(host.alert()->title(),
              u"Do you want to import Settings from my settings.plist? All current settings will be overwritten!!!");
    EXPECT_EQ(host.alert()->message(), u"my settings.plist");
    EXPECT_EQ(host.alert()->button(1)->text(), u"YES");
    EXPECT_TRUE(host.alert()->isDestructive(1)) << "what was there is overwritten";
    EXPECT_EQ(screen->filename(), "my settings.plist");
}

TEST_F(ExportTest, DeletesTheEntryAndNothingBehindALink) {
    ScreenHost::put(host.directory.path().toStdString() + "/outside", "kept");
    fs::create_directory(file("a-folder"));
    fs::create_directory_symlink(host.directory.path().toStdString(), file("a-folder") / "link");
    fs::create_directory_symlink(host.directory.path().toStdString(), file("b-link"));
    ScreenHost::put(file("c\n\xFF"), "");
    ScreenHost::put(file("d-kept"), "");
    auto* screen = open();
    for (int each = 0; each < 3; ++each) {
        host.tapRow({0, 0});  // the keyboard goes where the tap was
        host.answer(0);
        QTest::keyClick(host.table(), Qt::Key_Delete);
        QTest::keyClick(host.table(), Qt::Key_Delete);
        QApplication::processEvents();
    }
    EXPECT_EQ(screen->content(), std::vector<std::string>{"d-kept"});
    EXPECT_EQ(title(0), u"d-kept");
    EXPECT_EQ(std::distance(fs::directory_iterator(host.store.exportDirectory()), {}), 1);
    EXPECT_EQ(ScreenHost::bytes(host.directory.path().toStdString() + "/outside"), "kept");
}

class HostListImportTest : public testing::Test {
protected:
    // Imports a list file of these bytes, or one that is no file.
    void import(bool isDeny, const std::optional<std::string>& bytes, int button = 1) {
        const fs::path list = host.store.listDirectory() / "list.txt";
        fs::remove_all(list);
        if (bytes) {
            ScreenHost::put(list, *bytes);
        } else {
            fs::create_directory(list);
        }
        host.show<screens::VxmGlobalImportViewController>(isDeny);
        host.tapRow({0, 0});
        ASSERT_TRUE(host.alert());
        EXPECT_EQ(host.alert()->title(), u"Do you want to import rules from this file?");
        EXPECT_EQ(host.alert()->message(), u"list.txt");
        EXPECT_FALSE(host.alert()->isDestructive(1)) << "it adds";
        host.answer(button);
    }

    // The rules of a list, or "none".
    std::string rules(std::string_view key) const {
        const auto file = host.store.read(File::globalRules);
        if (!file || !file->contains(key)) return "none";
        std::string text;
        const auto entries = file->find(key)->array();
        for (const store::Value& entry : *entries) {
            text += entry.dictionary()->find("rule")->string().value() + "|";
        }
        return text;
    }

    ScreenHost host;
};

TEST_F(HostListImportTest, AppendsToTheListOfItsKind) {
    const std::string held =
        "<dict><key>globalAllow</key><array><dict><key>rule</key><string>old</string></dict></array></dict>";
    const struct {
        bool isDeny;
        int button;
        std::optional<std::string> bytes;
        const char* allow;
        const char* deny;
        bool hasMarker;
    } cases[] = {
        {false, 1, "alpha.example\nbeta.example\n", "old|alpha.example|beta.example||", "none", true},
        {true, 1, "ads .example .net", "old|", "ads.example.net|", true},
        {false, 0, "alpha.example", "old|", "none", false},
        {false, 1, std::nullopt, "old|", "none", true},
        {true, 1, std::nullopt, "old|", "", true},
        {true, 1, std::string("\0\1", 2), "old|", "", true},
    };
    for (const auto& each : cases) {
        host.put(File::globalRules, held);
        import(each.isDeny, each.bytes, each.button);
        EXPECT_EQ(rules("globalAllow"), each.allow);
        EXPECT_EQ(rules("globalDeny"), each.deny);
        EXPECT_EQ(host.store.read(File::globalRules)->contains("150"), each.hasMarker);
    }
    EXPECT_TRUE(host.posts.empty());
}

TEST_F(HostListImportTest, TwiceIsTwice) {
    host.put(File::globalRules, "<dict/>");
    import(true, "a\r\nb");
    import(true, "a\r\nb");
    EXPECT_EQ(rules("globalDeny"), "a\r|b|a\r|b|");
}

TEST_F(HostListImportTest, WithoutARulesFileNothingIsWritten) {
    import(false, "alpha.example");
    EXPECT_FALSE(host.store.exists(File::globalRules));
}

TEST_F(HostListImportTest, ListFilesCannotBeDeleted) {
    ScreenHost::put(host.store.listDirectory() / "list.txt", "");
    auto* screen = host.show<screens::VxmGlobalImportViewController>(false);
    EXPECT_FALSE(screen->canEditRowAtIndexPath(*host.table(), {0, 0}));
    host.tapRow({0, 0});  // the keyboard goes where the tap was
    host.answer(0);
    for (int each = 0; each < 2; ++each) QTest::keyClick(host.table(), Qt::Key_Delete);
    QApplication::processEvents();
    EXPECT_TRUE(fs::exists(host.store.listDirectory() / "list.txt"));
    EXPECT_TRUE(host.table()->cellForRow({0, 0}));
}

}  // namespace
