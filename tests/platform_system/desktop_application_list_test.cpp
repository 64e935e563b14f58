#include "platform/system/DesktopApplicationList.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QSet>

#include "platform_system/DataDirectory.h"

using platform::DesktopApplicationList;
using testing_support::DataDirectory;
namespace fs = std::filesystem;

namespace {

QHash<QString, QString> listOf(std::vector<fs::path> directories) {
    return DesktopApplicationList(std::move(directories)).applicationsFilteredUsingPredicate({});
}

class Environment {  // a variable set for a scope
public:
    Environment(const char* name, const QByteArray& value) : name_(name), before_(qgetenv(name)) {
        qputenv(name, value);
    }
    ~Environment() { before_.isNull() ? qunsetenv(name_) : qputenv(name_, before_); }

private:
    const char* name_;
    QByteArray before_;
};

}  // namespace

TEST(DesktopApplicationList, ListsWhatIsAnApplicationToShow) {
    struct Case {
        const char* file;
        std::string content;
        const char* identifier;  // none: left out
        const char* name = nullptr;
    };
    const std::string head = "[Desktop Entry]\nType=Application\n";
    const Case cases[] = {
        {"plain.desktop", head + "Name=Plain\n", "plain", "Plain"},
        {"org.example.App.desktop", head + "Name=Dotted\n", "org.example.App", "Dotted"},
        {"sub/deep/er.desktop", head + "Name=Deep\n", "sub-deep-er", "Deep"},
        {"crlf.desktop", "[Desktop Entry]\r\nType=Application\r\nName=Lines\r\n", "crlf", "Lines"},
        {"commented.desktop", "# first\n\n" + head + "Name=Commented\n[Desktop Action x]\nName=No\n", "commented",
         "Commented"},
        {"umlaut.desktop", head + "Name=Größe 日本\n", "umlaut", "Größe 日本"},
        {"lines.desktop", head + "Name=  Two\\nLines \n", "lines", "Two Lines"},
        {"shown.desktop", head + "Name=Shown\nNoDisplay=false\nHidden=false\n", "shown", "Shown"},
        {"odd.desktop", head + "Name=Odd\nNoDisplay=perhaps\n", "odd", "Odd"},
        {"hidden.desktop", head + "Name=Hidden\nHidden=true\n", nullptr},
        {"nodisplay.desktop", head + "Name=NoDisplay\nNoDisplay=true\n", nullptr},
        {"link.desktop", "[Desktop Entry]\nType=Link\nName=Link\nURL=file:///\n", nullptr},
        {"untyped.desktop", "[Desktop Entry]\nName=Untyped\n", nullptr},
        {"nameless.desktop", head + "Icon=x\n", nullptr},
        {"blank.desktop", head + "Name=  \n", nullptr},
        {"latin1.desktop",
         head + "Name=Gr\xF6\xDF"
                "e\n",
         nullptr},
        {"legacy.desktop", head + "Encoding=Legacy-Mixed\nName=Legacy\n", nullptr},
        {"empty.desktop", "", nullptr},
        {"binary.desktop", std::string("\0\1\2\xFF", 4), nullptr},
        {"groupless.desktop", "Name=Groupless\n", nullptr},
        {"broken.desktop", head + "Name=Broken\nthis is no key\n", nullptr},
        {"giant.desktop", head + "Name=Giant\nComment=" + std::string(2 << 20, 'x') + "\n", nullptr},
        {".desktop", head + "Name=No identifier\n", nullptr},
        {"backup.desktop~", head + "Name=Backup\n", nullptr},
        {"bad\xFFname.desktop", head + "Name=Bad file name\n", nullptr},
    };
    DataDirectory directory;
    QHash<QString, QString> expected;
    for (const Case& item : cases) {
        directory.write("applications/" + std::string(item.file), item.content);
        if (item.identifier) expected.insert(QString::fromUtf8(item.identifier), QString::fromUtf8(item.name));
    }
    // What only looks like an entry, and folders that lead back to themselves.
    const auto folder = directory.path() / "applications";
    ASSERT_EQ(mkfifo((folder / "pipe.desktop").c_str(), 0600), 0);
    fs::create_directory(folder / "folder.desktop");
    fs::create_symlink("nowhere", folder / "dangling.desktop");
    fs::create_directory_symlink("..", folder / "sub/circle");
    fs::create_symlink("../plain.desktop", folder / "sub/linked.desktop");
    expected.insert(QStringLiteral("sub-linked"), QStringLiteral("Plain"));

    EXPECT_EQ(listOf({directory.path(), directory.path() / "absent"}), expected);
}

TEST(DesktopApplicationList, NamesFollowTheLocale) {
    DataDirectory directory;
    directory.writeEntry("a.desktop", "Name=Clock\nName[de]=Uhr\nName[de_AT]=Zeitmesser\nName[sr@latin]=Sat\n");
    const std::pair<const char*, const char*> cases[] = {{"de_DE.UTF-8", "Uhr"},
                                                         {"de_AT.UTF-8", "Zeitmesser"},
                                                         {"fr_FR.UTF-8", "Clock"},
                                                         {"sr_RS.UTF-8@latin", "Sat"},
                                                         {"C", "Clock"}};
    for (const auto& [locale, name] : cases) {
        const Environment environment("LC_ALL", locale);
        EXPECT_EQ(listOf({directory.path()}).value(QStringLiteral("a")), QString::fromUtf8(name)) << locale;
    }
}

TEST(DesktopApplicationList, AnEarlierDirectoryHidesALaterOne) {
    DataDirectory own, system;
    own.writeEntry("renamed.desktop", "Name=Mine\n");
    own.writeEntry("removed.desktop", "Name=Removed\nHidden=true\n");
    for (const char* id : {"renamed", "removed", "kept"})
        system.writeEntry(std::string(id) + ".desktop", "Name=Theirs\n");
    const auto names = listOf({own.path(), system.path()});
    EXPECT_EQ(names, (QHash<QString, QString>{{QStringLiteral("renamed"), QStringLiteral("Mine")},
                                              {QStringLiteral("kept"), QStringLiteral("Theirs")}}));
}

TEST(DesktopApplicationList, AQuerySeesWhatIsInstalledNow) {
    DataDirectory directory;
    const auto changed = directory.writeEntry("changed.desktop", "Name=Before\n");
    const auto removed = directory.writeEntry("removed.desktop", "Name=Removed\n");
    DesktopApplicationList list({directory.path()});
    EXPECT_EQ(list.applicationsFilteredUsingPredicate({}).size(), 2);

    directory.writeEntry("changed.desktop", "Name=Afterwards\n");
    fs::remove(removed);
    directory.writeEntry("added.desktop", "Name=Added\n");
    EXPECT_EQ(list.applicationsFilteredUsingPredicate({}),
              (QHash<QString, QString>{{QStringLiteral("changed"), QStringLiteral("Afterwards")},
                                       {QStringLiteral("added"), QStringLiteral("Added")}}));

    QSet<QString> asked;
    const auto none = list.applicationsFilteredUsingPredicate([&](const QString& identifier) {
        asked.insert(identifier);
        return false;
    });
    EXPECT_TRUE(none.isEmpty());
    EXPECT_EQ(asked.size(), 2);
}

TEST(DesktopApplicationList, DataDirectoriesOfTheEnvironmentAndOfARoot) {
    const Environment home("XDG_DATA_HOME", "/home/u/data"),
        directories("XDG_DATA_DIRS", "/a/share/:relative::/b/share:/a/share");
    const std::vector<fs::path> ofTheHost = DesktopApplicationList::dataDirectories("/");
    EXPECT_EQ(ofTheHost,
              (std::vector<fs::path>{"/home/u/data", "/a/share", "/b/share", "/home/u/data/flatpak/exports/share",
                                     "/var/lib/flatpak/exports/share", "/var/lib/snapd/desktop"}));
    const std::vector<fs::path> ofADevice = DesktopApplicationList::dataDirectories("/device/");
    EXPECT_EQ(ofADevice.front(), "/device/usr/local/share");
    for (const fs::path& path : ofADevice) EXPECT_TRUE(path.string().starts_with("/device/")) << path;
}
