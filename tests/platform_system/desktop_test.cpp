#include "platform/system/DesktopApplicationList.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QSet>
#include <QUrl>

#include "platform/desktop/DataDirectories.h"
#include "platform/system/DesktopAddress.h"
#include "platform_system/DataDirectory.h"

using platform::DesktopApplicationList;
using testing_support::DataDirectory;
using namespace Qt::StringLiterals;
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
    const std::string head = "[Desktop Entry]\nType=Application\n";
    const std::tuple<const char*, std::string, QString> listed[] = {
        {"plain", head + "Name=Plain\n", u"Plain"_s},
        {"org.example.App", head + "Name=Dotted\n", u"Dotted"_s},
        {"sub/deep/er", head + "Name=Deep\n", u"Deep"_s},
        {"umlaut", head + "Name=Größe 日本\n", u"Größe 日本"_s},
    };
    // More of these stand in the fuzz target's corpus.
    const std::string leftOut[] = {
        head + "Name=Hidden\nHidden=true\n",
        "[Desktop Entry]\nName=Untyped\n",
        head + "Name=Giant\nComment=" + std::string(2 << 20, 'x') + "\n",
    };
    DataDirectory directory;
    QHash<QString, QString> expected;
    for (const auto& [file, content, name] : listed) {
        directory.write(std::string("applications/") + file + ".desktop", content);
        expected.insert(QString::fromUtf8(file).replace(u'/', u'-'), name);
    }
    for (const std::string& content : leftOut)
        directory.write("applications/" + std::to_string(&content - leftOut) + ".desktop", content);
    for (const char* file : {".desktop", "backup.desktop~", "bad\xFFname.desktop"})
        directory.write(std::string("applications/") + file, head + "Name=Bad file name\n");
    // What only looks like an entry, and folders that lead back to themselves.
    const auto folder = directory.path() / "applications";
    ASSERT_EQ(mkfifo((folder / "pipe.desktop").c_str(), 0600), 0);
    fs::create_directory(folder / "folder.desktop");
    fs::create_symlink("nowhere", folder / "dangling.desktop");
    fs::create_directory_symlink("..", folder / "sub/circle");
    fs::create_symlink("../plain.desktop", folder / "sub/linked.desktop");
    expected.insert(u"sub-linked"_s, u"Plain"_s);

    EXPECT_EQ(listOf({directory.path(), directory.path() / "absent"}), expected);
}

TEST(DesktopApplicationList, NamesFollowTheLocale) {
    DataDirectory directory;
    directory.writeEntry("a.desktop", "Name=Clock\nName[de]=Uhr\nName[de_AT]=Zeitmesser\nName[sr@latin]=Sat\n");
    const std::pair<const char*, QString> cases[] = {{"de_DE.UTF-8", u"Uhr"_s},
                                                     {"de_AT.UTF-8", u"Zeitmesser"_s},
                                                     {"fr_FR.UTF-8", u"Clock"_s},
                                                     {"sr_RS.UTF-8@latin", u"Sat"_s},
                                                     {"C", u"Clock"_s}};
    for (const auto& [locale, name] : cases) {
        const Environment environment("LC_ALL", locale);
        EXPECT_EQ(listOf({directory.path()}).value(u"a"_s), name) << locale;
    }
}

TEST(DesktopApplicationList, AnEarlierDirectoryHidesALaterOne) {
    DataDirectory own, system;
    own.writeEntry("renamed.desktop", "Name=Mine\n");
    own.writeEntry("removed.desktop", "Name=Removed\nHidden=true\n");
    for (const char* id : {"renamed", "removed", "kept"})
        system.writeEntry(std::string(id) + ".desktop", "Name=Theirs\n");
    EXPECT_EQ(listOf({own.path(), system.path()}),
              (QHash<QString, QString>{{u"renamed"_s, u"Mine"_s}, {u"kept"_s, u"Theirs"_s}}));
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
              (QHash<QString, QString>{{u"changed"_s, u"Afterwards"_s}, {u"added"_s, u"Added"_s}}));

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
    const std::vector<fs::path> ofTheHost = platform::dataDirectories("/");
    EXPECT_EQ(ofTheHost,
              (std::vector<fs::path>{"/home/u/data", "/a/share", "/b/share", "/home/u/data/flatpak/exports/share",
                                     "/var/lib/flatpak/exports/share", "/var/lib/snapd/desktop"}));
    const std::vector<fs::path> ofADevice = platform::dataDirectories("/device/");
    EXPECT_EQ(ofADevice.front(), "/device/usr/local/share");
    for (const fs::path& path : ofADevice) EXPECT_TRUE(path.string().starts_with("/device/")) << path;
}

TEST(DesktopAddress, IsWrittenAsTheDesktopReadsIt) {
    const std::pair<QString, const char*> cases[] = {
        {u"mailto://support@vexmor.example?subject=Vexmor%20Help&body=A:%3Cbr%3EB!"_s,
         "mailto:support@vexmor.example?subject=Vexmor%20Help&body=A:%3Cbr%3EB!"},
        {u"mailto://a%20b@vexmor.example"_s, "mailto:a%20b@vexmor.example"},
        {u"mailto:support@vexmor.example?subject=x"_s, "mailto:support@vexmor.example?subject=x"},
        {u"https://someone@vexmor.example/page?q=1"_s, "https://someone@vexmor.example/page?q=1"},
    };
    for (const auto& [phone, desktop] : cases)
        EXPECT_EQ(platform::desktopAddress(QUrl(phone, QUrl::StrictMode)).toEncoded().toStdString(), desktop);
}
