#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QColor>
#include <QProcess>
#include <atomic>
#include <latch>
#include <memory>
#include <thread>

#include "platform/system/DesktopApplicationList.h"
#include "platform/system/IconImage.h"
#include "platform_system/DataDirectory.h"

using platform::DesktopApplicationList;
using testing_support::DataDirectory;
namespace fs = std::filesystem;

namespace {

constexpr int points = 29;

QColor middle(const QImage& icon) {
    return icon.isNull() ? QColor() : icon.pixelColor(icon.width() / 2, icon.height() / 2);
}

std::string svg(const std::string& elements, const std::string& size = "viewBox='0 0 8 8'") {
    return "<svg xmlns='http://www.w3.org/2000/svg' " + size + ">" + elements + "</svg>";
}

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int time = 0; time < times; ++time) all += text;
    return all;
}

std::string gzip(const std::string& bytes) {
    QProcess program;
    program.start(QStringLiteral("gzip"), {QStringLiteral("-1nc")});
    program.write(bytes.data(), static_cast<qint64>(bytes.size()));
    program.closeWriteChannel();
    program.waitForFinished();
    return program.readAllStandardOutput().toStdString();
}

// Counts announcements, from whatever thread.
class Announcements {
public:
    explicit Announcements(const DesktopApplicationList& list) {
        QObject::connect(&list, &DesktopApplicationList::iconLoaded, [this] { ++count_; });
    }
    int count() const { return count_; }

private:
    std::atomic<int> count_ = 0;
};

}  // namespace

TEST(Icons, AreFoundByNameSizeAndScale) {
    DataDirectory directory, other;
    directory.writeTheme();
    directory.writePng("icons/hicolor/16/apps/sized.png", 16, Qt::red);
    directory.writePng("icons/hicolor/32/apps/sized.png", 32, Qt::green);
    directory.writePng("icons/hicolor/16@2/apps/scaled.png", 32, Qt::red);
    directory.writePng("icons/hicolor/16/apps/scaled.png", 16, Qt::green);
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
    const auto absolute = directory.writePng("anywhere/absolute.png", 200, Qt::green);
    struct Case {
        std::string icon;
        double scale;
        bool found;
    };
    const Case cases[] = {
        {"sized", 1, true},
        {"sized", 2, true},
        {"drawn", 1, true},
        {"drawn", 1.5, true},
        {"drawn", 3, true},
        {"drawn.svg", 1, true},
        {"sized.png", 1, true},
        {"old", 1, true},
        {"elsewhere", 1, true},
        {"inherited", 1, true},
        {absolute.string(), 2, true},
        {"absent", 1, false},
        {"", 1, false},
        {"../../pixmaps/old", 1, false},
        {"/absent.png", 1, false},
    };
    for (const Case& item : cases) {
        SCOPED_TRACE(item.icon + " at " + std::to_string(item.scale));
        directory.writeEntry("app.desktop", "Name=App\nIcon=" + item.icon + "\n");
        DesktopApplicationList list({directory.path(), other.path()});
        list.setScale(item.scale);
        const QImage icon = list.iconOfSize(points, QStringLiteral("app"));
        EXPECT_EQ(icon.isNull(), !item.found);
        if (!item.found) continue;
        EXPECT_EQ(middle(icon), QColor(0, 255, 0));
        EXPECT_EQ(icon.devicePixelRatio(), item.scale);
        EXPECT_EQ(icon.size(), QSize(1, 1) * std::ceil(points * item.scale));
    }
}

TEST(Icons, AreFoundInHicolorWithoutAnIndex) {
    DataDirectory directory;
    directory.writePng("icons/hicolor/24x24/apps/sized.png", 24, Qt::red);
    directory.writePng("icons/hicolor/32x32/apps/sized.png", 32, Qt::green);
    directory.writePng("icons/hicolor/48x48@2/apps/scaled.png", 96, Qt::green);
    directory.writeSvg("icons/hicolor/scalable/apps/drawn.svg", "lime");
    directory.writePng("icons/hicolor/48x48/apps/drawn.png", 48, Qt::red);
    for (const char* icon : {"sized", "scaled", "drawn"}) {
        directory.writeEntry("app.desktop", "Name=App\nIcon=" + std::string(icon) + "\n");
        DesktopApplicationList list({directory.path()});
        EXPECT_EQ(middle(list.iconOfSize(points, QStringLiteral("app"))), QColor(0, 255, 0)) << icon;
    }
}

TEST(Icons, AbsolutePathsLieBelowTheRoot) {
    DataDirectory device, host;
    const auto outside = host.writePng("outside.png", 29, Qt::red);
    const auto inside = device.writePng("opt/app/inside.png", 29, Qt::green);
    const std::pair<std::string, bool> cases[] = {{"/opt/app/inside.png", true},
                                                  {"/../../opt/app/inside.png", true},
                                                  {inside.string(), true},
                                                  {outside.string(), false}};
    for (const auto& [icon, found] : cases) {
        device.writeEntry("app.desktop", "Name=App\nIcon=" + icon + "\n");
        DesktopApplicationList list({device.path()}, device.path());
        EXPECT_EQ(list.iconOfSize(points, QStringLiteral("app")).isNull(), !found) << icon;
    }
}

TEST(Icons, KeepTheirShape) {
    DataDirectory directory;
    QImage wide(60, 20, QImage::Format_RGB32);
    wide.fill(Qt::green);
    const auto file = directory.write("wide.png", "");
    wide.save(QString::fromStdString(file.string()), "PNG");
    directory.writeEntry("wide.desktop", "Name=Wide\nIcon=" + file.string() + "\n");
    const QImage icon = DesktopApplicationList({directory.path()}).iconOfSize(points, QStringLiteral("wide"));
    ASSERT_EQ(icon.size(), QSize(points, points));
    EXPECT_EQ(middle(icon), QColor(0, 255, 0));
    EXPECT_EQ(icon.pixelColor(0, points / 2), QColor(0, 255, 0));
    EXPECT_EQ(icon.pixelColor(points / 2, 2).alpha(), 0);
}

// Each green in the middle and transparent in the corner, once what it needs has been drawn.
TEST(Icons, AreDrawnWithMasksClipsAndFilters) {
    const std::pair<const char*, const char*> cases[] = {
        {"mask",
         "<mask id='m'><circle cx='4' cy='4' r='4' fill='white'/></mask>"
         "<rect width='8' height='8' fill='lime' mask='url(#m)'/>"},
        {"clip",
         "<clipPath id='c'><circle cx='4' cy='4' r='4'/></clipPath>"
         "<rect width='8' height='8' fill='lime' clip-path='url(#c)'/>"},
        {"filter",
         "<filter id='f' x='0' y='0' width='1' height='1'><feFlood flood-color='lime' x='2' y='2' width='4' "
         "height='4'/></filter><rect width='8' height='8' fill='red' filter='url(#f)'/>"},
    };
    DataDirectory directory;
    for (const auto& [what, elements] : cases) {
        const QImage icon = platform::readIcon(directory.write("icon.svg", svg(elements)), points, 1.5);
        EXPECT_EQ(middle(icon), QColor(0, 255, 0)) << what;
        EXPECT_EQ(icon.isNull() ? -1 : icon.pixelColor(0, 0).alpha(), 0) << what;
    }
}

// A hostile picture ends its own drawing and nothing else: the next one is drawn.
TEST(Icons, BadVectorsAreHarmless) {
    DataDirectory directory;
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
    struct Case {
        const char* what;
        std::string bytes;
        bool drawn = false;
        const char* file = "icon.svg";
    };
    const Case cases[] = {
        {"empty", ""},
        {"truncated", svg(square).substr(0, 60)},
        {"100 MB", svg(square + std::string(100 << 20, ' '))},
        {"compressed", gzip(svg(square)), true, "icon.svgz"},
        {"compressed and cut", gzip(svg(square)).substr(0, 60), false, "icon.svgz"},
        {"millions of elements, compressed", gzip(svg(elements + square)), false, "icon.svgz"},
        {"millions of elements", svg(elements.substr(0, 10 << 20) + square)},
        {"entities of entities", entities + "]>" + svg("<text>&a11;</text>")},
        {"copies of copies", svg(copies)},
        {"a copy of itself", svg("<g id='a'><use href='#b'/></g><g id='b'><use href='#a'/></g>" + square), true},
        {"a file", svg(square + "<image width='8' height='8' href='" + link + "'/><use href='" + link + "#a'/>"), true},
        {"an address", svg(square + "<image width='8' height='8' href='http://127.0.0.1:1/a.png'/>"), true},
        {"a large size", svg(square, "width='1e9' height='1e9' viewBox='0 0 8 8'"), true},
        {"no size", svg(square, "width='8' height='0'")},
        {"what the library aborts at",
         filtered("<feConvolveMatrix order='50' kernelMatrix='" + repeated("1 ", 2500) + "'/>")},
        {"a large blur", filtered("<feGaussianBlur stdDeviation='1e9'/>"), true},
        {"endless turbulence", filtered("<feTurbulence numOctaves='2000000000' baseFrequency='.01'/>")},
    };
    const auto good = directory.writeSvg("good.svg", "lime");
    for (const Case& item : cases) {
        SCOPED_TRACE(item.what);
        const QImage icon = platform::readIcon(directory.write(item.file, item.bytes), points, 2);
        EXPECT_EQ(middle(icon), item.drawn ? QColor(0, 255, 0) : QColor());
        EXPECT_EQ(middle(platform::readIcon(good, points, 2)), QColor(0, 255, 0)) << "the next one";
    }
}

TEST(Icons, WhatCannotBeLoadedIsRememberedUntilItChanges) {
    DataDirectory directory;
    directory.writeTheme();
    const auto picture = directory.path() / "picture";
    const auto write = [&](const std::string& name, const std::string& bytes) { directory.write(name, bytes); };
    const std::string png = [&] {
        std::ifstream file(directory.writePng("good.png", 29, Qt::green), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }();
    struct Case {
        const char* what;
        std::string icon;
        std::function<void()> spoil, repair;
    };
    const auto inTheme = [](const std::string& name) { return "icons/hicolor/32/apps/" + name; };
    const Case cases[] = {
        {"truncated picture", "cut", [&] { write(inTheme("cut.png"), png.substr(0, png.size() / 2)); },
         [&] { write(inTheme("cut.png"), png); }},
        {"broken vectors", "vectors", [&] { write("icons/hicolor/vectors/apps/vectors.svg", "<svg><g></svg"); },
         [&] { directory.writeSvg("icons/hicolor/vectors/apps/vectors.svg", "lime"); }},
        {"vectors nested without end", "nested",
         [&] {
             std::string svg = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 1 1'>";
             for (int depth = 0; depth < 100'000; ++depth) svg += "<g>";
             write("icons/hicolor/vectors/apps/nested.svg", svg);
         },
         [&] { directory.writeSvg("icons/hicolor/vectors/apps/nested.svg", "lime"); }},
        {"empty file", "empty", [&] { write(inTheme("empty.png"), ""); }, [&] { write(inTheme("empty.png"), png); }},
        {"folder of the theme made later", "later", [] {}, [&] { write("icons/hicolor/absent/apps/later.png", png); }},
        {"icon added beside the themes", "beside", [] {}, [&] { write("pixmaps/beside.png", png); }},
        {"absolute path to nothing", picture, [] {}, [&] { write("picture", png); }},
        {"absolute path to a pipe", picture,
         [&] {
             fs::remove(picture);
             mkfifo(picture.c_str(), 0600);
         },
         [&] {
             fs::remove(picture);
             write("picture", png);
         }},
        {"entry that names another icon", "nothing", [] {},
         [&] { directory.writeEntry("app.desktop", "Name=App\nIcon=" + (directory.path() / "good.png").string()); }},
    };
    for (const Case& item : cases) {
        SCOPED_TRACE(item.what);
        const auto app = QStringLiteral("app");
        item.spoil();
        directory.writeEntry("app.desktop", "Name=App\nIcon=" + item.icon + "\n");
        DesktopApplicationList list({directory.path()});
        const Announcements announcements(list);
        list.applicationsFilteredUsingPredicate({});
        EXPECT_FALSE(list.iconFailed(points, app)) << "not tried yet";
        EXPECT_TRUE(list.copyIconOfSize(points, app).isNull());
        list.applicationsFilteredUsingPredicate({});
        EXPECT_TRUE(list.iconFailed(points, app));
        EXPECT_FALSE(list.hasCachedIconOfSize(points, app));
        EXPECT_EQ(announcements.count(), 0);

        item.repair();
        list.applicationsFilteredUsingPredicate({});
        EXPECT_FALSE(list.iconFailed(points, app));
        EXPECT_EQ(middle(list.copyIconOfSize(points, app)), QColor(0, 255, 0));
        EXPECT_TRUE(list.hasCachedIconOfSize(points, app));
        EXPECT_EQ(announcements.count(), 1);
    }
}

TEST(Icons, AReplacedPictureIsLoadedAgain) {
    DataDirectory directory;
    directory.writeTheme();
    directory.writePng("icons/hicolor/32/apps/app.png", 32, Qt::red);
    directory.writeEntry("app.desktop", "Name=App\nIcon=app\n");
    DesktopApplicationList list({directory.path()});
    const auto app = QStringLiteral("app");
    EXPECT_EQ(middle(list.iconOfSize(points, app)), QColor(255, 0, 0));
    directory.writePng("icons/hicolor/32/apps/app.png", 31, Qt::green);
    EXPECT_TRUE(list.hasCachedIconOfSize(points, app)) << "nobody has looked yet";
    list.applicationsFilteredUsingPredicate({});
    EXPECT_FALSE(list.hasCachedIconOfSize(points, app));
    EXPECT_EQ(middle(list.iconOfSize(points, app)), QColor(0, 255, 0));
}

TEST(Icons, OnlyTheGenericIconNeedsNoApplication) {
    DataDirectory directory;
    DesktopApplicationList list({directory.path()});
    list.setScale(2);
    const QImage generic = list.iconOfSize(points, QStringLiteral("com.apple.WebSheet"));
    EXPECT_EQ(generic.size(), QSize(58, 58));
    EXPECT_EQ(generic.devicePixelRatio(), 2);
    EXPECT_TRUE(list.iconOfSize(points, QStringLiteral("com.apple.gamed")).isNull());
    EXPECT_TRUE(list.iconFailed(points, QStringLiteral("com.apple.gamed")));
}

// Four threads load the same icons while the main thread lists and entries change under them: each load of an icon is
// announced, each icon is whole, and at the end all are those of the entries as they are.
TEST(Icons, AreLoadedOnSeveralThreads) {
    constexpr int apps = 24;
    DataDirectory directory;
    const auto writeApps = [&](const char* colour) {
        for (int app = 0; app < apps; ++app) {
            const std::string name = std::string(colour) + std::to_string(app);
            const auto icon = directory.writeSvg(name + ".svg", colour);
            directory.writeEntry("app" + std::to_string(app) + ".desktop", "Name=App\nIcon=" + icon.string() + "\n");
        }
    };
    const auto identifier = [](int app) { return QStringLiteral("app%1").arg(app); };
    writeApps("red");
    DesktopApplicationList list({directory.path()});
    const Announcements announcements(list);
    const auto loadAllOnFourThreads = [&] {
        const auto start = std::make_shared<std::latch>(4);  // the threads outlive this function
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&, start] {
                start->arrive_and_wait();
                for (int app = 0; app < apps; ++app)
                    EXPECT_FALSE(list.copyIconOfSize(points, identifier(app)).isNull());
            });
        }
        return threads;
    };
    for (std::thread& thread : loadAllOnFourThreads()) thread.join();
    EXPECT_EQ(announcements.count(), apps) << "once, however many asked";

    list.applicationsFilteredUsingPredicate({});
    auto threads = loadAllOnFourThreads();
    writeApps("lime");
    for (int round = 0; round < 20; ++round) list.applicationsFilteredUsingPredicate({});
    for (std::thread& thread : threads) thread.join();
    list.applicationsFilteredUsingPredicate({});
    for (int app = 0; app < apps; ++app) EXPECT_EQ(middle(list.iconOfSize(points, identifier(app))), QColor(0, 255, 0));
}
