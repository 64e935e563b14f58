#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QColor>
#include <QProcess>
#include <atomic>
#include <latch>
#include <thread>

#include "platform/system/DesktopApplicationList.h"
#include "platform/system/IconImage.h"
#include "platform_system/DataDirectory.h"
#include "store/Files.h"

namespace {

using namespace Qt::StringLiterals;
using platform::DesktopApplicationList;
using platform::readIcon;
using testing_support::DataDirectory;
namespace fs = std::filesystem;

constexpr int points = 29;
const QColor green(Qt::green);
const QString app = u"app"_s;

QColor middle(const QImage& icon) {
    return icon.isNull() ? QColor() : icon.pixelColor(icon.width() / 2, icon.height() / 2);
}

std::string svg(const std::string& elements) {
    return "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 8 8'>" + elements + "</svg>";
}

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int time = 0; time < times; ++time) all += text;
    return all;
}

std::string gzip(const std::string& bytes) {
    QProcess program;
    program.start(u"gzip"_s, {u"-1nc"_s});
    program.write(bytes.data(), static_cast<qint64>(bytes.size()));
    program.closeWriteChannel();
    program.waitForFinished();
    return program.readAllStandardOutput().toStdString();
}

struct IconsTest : testing::Test {
    // Counts announcements, from whatever thread.
    void count(const DesktopApplicationList& list) {
        QObject::connect(&list, &DesktopApplicationList::iconLoaded, [this] { ++announced; });
    }
    void writeEntryWithIcon(const std::string& icon) const {
        directory.writeEntry("app.desktop", "Name=App\nIcon=" + icon + "\n");
    }
    QImage iconNamed(const std::string& icon, double scale = 1) const {
        writeEntryWithIcon(icon);
        DesktopApplicationList list({directory.path(), other.path()});
        list.setScale(scale);
        return list.iconOfSize(points, app);
    }

    const DataDirectory directory{}, other{};
    std::atomic<int> announced = 0;
};

TEST_F(IconsTest, AreFoundByNameSizeAndScale) {
    directory.writeTheme();
    directory.writePng("icons/hicolor/16/apps/sized.png", 16, Qt::red);
    directory.writePng("icons/hicolor/32/apps/sized.png", 32, Qt::green);
    directory.writePng("icons/hicolor/absent/apps/double.png", 29, Qt::red);
    directory.writePng("icons/hicolor/32/apps/double.png", 32, Qt::green);
    directory.writePng("icons/hicolor/32/apps/drawn.png", 32, Qt::red);
    directory.writeSvg("icons/hicolor/vectors/apps/drawn.svg", "lime");
    directory.writePng("pixmaps/old.png", 48, Qt::green);
    directory.writePng("pixmaps/sized.png", 29, Qt::red);
    other.writePng("icons/hicolor/32/apps/elsewhere.png", 32, Qt::green);
    directory.write("icons/Adwaita/index.theme",
                    "[Icon Theme]\nInherits=Nowhere,Parent\nDirectories=any\n[any]\nSize=29\n");
    directory.write("icons/Parent/index.theme", "[Icon Theme]\nInherits=Adwaita\nDirectories=any\n[any]\nSize=96\n");
    directory.writePng("icons/Parent/any/inherited.png", 96, Qt::green);
    directory.writePng("icons/hicolor/32/apps/inherited.png", 32, Qt::red);
    const auto absolute = directory.writePng("anywhere/absolute.png", 200, Qt::green).string();
    const std::pair<std::string, double> found[] = {
        {"sized", 1},     {"sized", 2},     {"double", 2}, {"drawn", 1},     {"drawn", 1.5},   {"drawn", 3},
        {"drawn.svg", 1}, {"sized.png", 1}, {"old", 1},    {"elsewhere", 1}, {"inherited", 1}, {absolute, 2}};
    for (const auto& [name, scale] : found) {
        SCOPED_TRACE(name + " at " + std::to_string(scale));
        const QImage icon = iconNamed(name, scale);
        EXPECT_EQ(middle(icon), green);
        EXPECT_EQ(icon.devicePixelRatio(), scale);
        EXPECT_EQ(icon.size(), QSize(1, 1) * std::ceil(points * scale));
    }
    for (const char* name : {"absent", "", "../../pixmaps/old", "/absent.png"})
        EXPECT_TRUE(iconNamed(name).isNull()) << name;
}

TEST_F(IconsTest, AreFoundInHicolorWithoutAnIndex) {
    directory.writePng("icons/hicolor/24x24/apps/sized.png", 24, Qt::red);
    directory.writePng("icons/hicolor/32x32/apps/sized.png", 32, Qt::green);
    directory.writePng("icons/hicolor/48x48@2/apps/scaled.png", 96, Qt::green);
    directory.writeSvg("icons/hicolor/scalable/apps/drawn.svg", "lime");
    directory.writePng("icons/hicolor/48x48/apps/drawn.png", 48, Qt::red);
    for (const char* name : {"sized", "scaled", "drawn"}) EXPECT_EQ(middle(iconNamed(name)), green) << name;
}

TEST_F(IconsTest, AbsolutePathsLieBelowTheRoot) {
    const auto outside = other.writePng("outside.png", 29, Qt::red);
    const auto inside = directory.writePng("opt/app/inside.png", 29, Qt::green);
    const std::pair<std::string, bool> cases[] = {{"/opt/app/inside.png", true},
                                                  {"/../../opt/app/inside.png", true},
                                                  {inside.string(), true},
                                                  {outside.string(), false}};
    for (const auto& [icon, found] : cases) {
        writeEntryWithIcon(icon);
        DesktopApplicationList list({directory.path()}, directory.path());
        EXPECT_EQ(list.iconOfSize(points, app).isNull(), !found) << icon;
    }
}

TEST_F(IconsTest, KeepTheirShape) {
    QImage wide(60, 20, QImage::Format_RGB32);
    wide.fill(Qt::green);
    const auto file = directory.write("wide.png", "");
    wide.save(QString::fromStdString(file.string()), "PNG");
    const QImage icon = iconNamed(file.string());
    ASSERT_EQ(icon.size(), QSize(points, points));
    EXPECT_EQ(middle(icon), green);
    EXPECT_EQ(icon.pixelColor(0, points / 2), green);
    EXPECT_EQ(icon.pixelColor(points / 2, 2).alpha(), 0);
}

// The clip cuts the left of a red square, the mask its right; the filter makes it green.
TEST_F(IconsTest, AreDrawnWithMasksClipsAndFilters) {
    const std::string elements =
        "<clipPath id='c'><rect x='2' width='6' height='8'/></clipPath>"
        "<mask id='m'><rect width='6' height='8' fill='white'/></mask>"
        "<filter id='f' x='0' y='0' width='1' height='1'><feFlood flood-color='lime'/></filter>"
        "<g clip-path='url(#c)' mask='url(#m)'><rect width='8' height='8' fill='red' filter='url(#f)'/></g>";
    const QImage icon = readIcon(directory.write("icon.svg", svg(elements)), points, 1.5);
    ASSERT_EQ(middle(icon), green);
    EXPECT_EQ(icon.pixelColor(0, icon.height() / 2).alpha(), 0);
    EXPECT_EQ(icon.pixelColor(icon.width() - 1, icon.height() / 2).alpha(), 0);
}

// A hostile picture ends its own drawing and nothing else: the next one is drawn. Small ones stand in the fuzz target's
// corpus.
TEST_F(IconsTest, BadVectorsAreHarmless) {
    const std::string square = "<rect width='8' height='8' fill='lime'/>";
    const std::string link = "file://" + directory.writePng("linked.png", 8, Qt::red).string();
    const auto filtered = [&](const std::string& filter) {
        return svg("<filter id='f' x='-1e6' y='-1e6' width='1e9' height='1e9'>" + filter +
                   "</filter><rect width='8' height='8' filter='url(#f)'/>" + square);
    };
    std::string entities = "<!DOCTYPE svg [<!ENTITY a0 'ha'>", copies = "<g id='a0'>" + square + "</g>";
    for (int level = 1; level < 12; ++level) {
        const std::string name = "a" + std::to_string(level), below = "a" + std::to_string(level - 1);
        entities += "<!ENTITY " + name + " '" + repeated("&" + below + ";", 10) + "'>";
        copies += "<g id='" + name + "'>" + repeated("<use href='#" + below + "'/>", 10) + "</g>";
    }
    const std::string elements = repeated("<g/>", 5'000'000);
    const struct {
        const char* what;
        std::string bytes;
        bool isDrawn = false;
        const char* file = "icon.svg";
    } cases[] = {
        {"100 MB", svg(square + std::string(100 << 20, ' '))},
        {"compressed", gzip(svg(square)), true, "icon.svgz"},
        {"millions of elements, compressed", gzip(svg(elements + square)), false, "icon.svgz"},
        {"millions of elements", svg(elements.substr(0, 10 << 20) + square)},
        {"entities of entities", entities + "]>" + svg("<text>&a11;</text>")},
        {"copies of copies", svg(copies)},
        {"a file", svg(square + "<image width='8' height='8' href='" + link + "'/><use href='" + link + "#a'/>"), true},
        {"what the library aborts at",
         filtered("<feConvolveMatrix order='50' kernelMatrix='" + repeated("1 ", 2500) + "'/>")},
        {"a large blur", filtered("<feGaussianBlur stdDeviation='1e9'/>"), true},
        {"endless turbulence", filtered("<feTurbulence numOctaves='2000000000' baseFrequency='.01'/>")},
    };
    const auto good = directory.writeSvg("good.svg", "lime");
    for (const auto& [what, bytes, isDrawn, file] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(middle(readIcon(directory.write(file, bytes), points, 2)), isDrawn ? green : QColor());
        EXPECT_EQ(middle(readIcon(good, points, 2)), green) << "the next one";
    }
}

TEST_F(IconsTest, WhatCannotBeLoadedIsRememberedUntilItChanges) {
    directory.writeTheme();
    const std::string png = store::contentOf(directory.writePng("good.png", 29, Qt::green));
    const std::string vectors = svg("<rect width='8' height='8' fill='lime'/>");
    const std::string picture = directory.path() / "picture";
    const std::string good =
        "[Desktop Entry]\nType=Application\nName=App\nIcon=" + (directory.path() / "good.png").string();
    const std::string absent = "absent", pipe = "pipe";
    const std::tuple<const char*, std::string, std::string, std::string, std::string> cases[] = {
        {"truncated picture", "cut", "icons/hicolor/32/apps/cut.png", png.substr(0, png.size() / 2), png},
        {"broken vectors", "broken", "icons/hicolor/vectors/apps/broken.svg", "<svg><g></svg", vectors},
        {"endless vectors", "nested", "icons/hicolor/vectors/apps/nested.svg", repeated("<svg>", 100'000), vectors},
        {"empty file", "empty", "icons/hicolor/32/apps/empty.png", "", png},
        {"folder of the theme made later", "later", "icons/hicolor/absent/apps/later.png", absent, png},
        {"only its innermost folder made later", "later", "icons/hicolor/absent/apps/later.png", absent, png},
        {"icon added beside the themes", "beside", "pixmaps/beside.png", absent, png},
        {"absolute path to nothing", picture, "picture", absent, png},
        {"absolute path to a pipe", picture, "picture", pipe, png},
        {"entry that names another icon", "nothing", "applications/app.desktop", absent, good},
    };
    for (const auto& [what, icon, file, before, after] : cases) {
        SCOPED_TRACE(what);
        announced = 0;
        fs::remove(directory.path() / file);
        fs::remove_all(directory.path() / "icons/hicolor/absent/apps");  // and not "absent", once it is there
        if (before == pipe) mkfifo((directory.path() / file).c_str(), 0600);
        if (before != absent && before != pipe) directory.write(file, before);
        writeEntryWithIcon(icon);
        DesktopApplicationList list({directory.path()});
        count(list);
        list.applicationsFilteredUsingPredicate({});
        EXPECT_FALSE(list.iconFailed(points, app)) << "not tried yet";
        EXPECT_TRUE(list.copyIconOfSize(points, app).isNull());
        list.applicationsFilteredUsingPredicate({});
        EXPECT_TRUE(list.iconFailed(points, app));
        EXPECT_FALSE(list.hasCachedIconOfSize(points, app));
        EXPECT_EQ(announced, 0);

        if (before == pipe) fs::remove(directory.path() / file);
        directory.write(file, after);
        list.applicationsFilteredUsingPredicate({});
        EXPECT_FALSE(list.iconFailed(points, app));
        EXPECT_EQ(middle(list.copyIconOfSize(points, app)), green);
        EXPECT_TRUE(list.hasCachedIconOfSize(points, app));
        EXPECT_EQ(announced, 1);
    }
}

TEST_F(IconsTest, OnlyTheGenericIconNeedsNoApplication) {
    DesktopApplicationList list({directory.path()});
    list.setScale(2);
    const QImage generic = list.iconOfSize(points, u"com.apple.WebSheet"_s);
    EXPECT_EQ(generic.size(), QSize(58, 58));
    EXPECT_EQ(generic.devicePixelRatio(), 2);
    EXPECT_TRUE(list.iconOfSize(points, u"com.apple.gamed"_s).isNull());
    EXPECT_TRUE(list.iconFailed(points, u"com.apple.gamed"_s));
}

// Four threads load the same icons while the main thread lists and entries change under them: each load of an icon is
// announced, each icon is whole, and at the end all are those of the entries as they are.
TEST_F(IconsTest, AreLoadedOnSeveralThreads) {
    constexpr int apps = 24;
    const auto writeApps = [this](const std::string& colour) {
        for (int each = 0; each < apps; ++each) {
            const std::string number = std::to_string(each);
            const auto icon = directory.writeSvg(colour + number + ".svg", colour);
            directory.writeEntry("app" + number + ".desktop", "Name=App\nIcon=" + icon.string() + "\n");
        }
    };
    writeApps("red");
    DesktopApplicationList list({directory.path()});
    count(list);
    const auto icon = [&list](int each) { return list.copyIconOfSize(points, u"app%1"_s.arg(each)); };
    const auto loadAllOnFourThreads = [&icon] {
        const auto start = std::make_shared<std::latch>(4);  // the threads outlive this function
        std::vector<std::jthread> threads(4);
        for (std::jthread& thread : threads) {
            thread = std::jthread([&icon, start] {
                start->arrive_and_wait();
                for (int each = 0; each < apps; ++each) EXPECT_FALSE(icon(each).isNull());
            });
        }
        return threads;
    };
    loadAllOnFourThreads().clear();
    EXPECT_EQ(announced, apps) << "once, however many asked";

    list.applicationsFilteredUsingPredicate({});
    auto threads = loadAllOnFourThreads();
    writeApps("lime");
    for (int round = 0; round < 20; ++round) list.applicationsFilteredUsingPredicate({});
    threads.clear();
    list.applicationsFilteredUsingPredicate({});
    for (int each = 0; each < apps; ++each) EXPECT_EQ(middle(icon(each)), green);
}

}  // namespace
