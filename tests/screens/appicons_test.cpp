// Icons come to the rows of the main screen and of the chooser, wherever those are when an icon has been loaded: real
// files, loaded by the real queue, seen in the picture of the rows.
#include <gtest/gtest.h>

#include <functional>

#include "catalog/VxmAppList.h"
#include "platform/ui/search/SearchDisplayController.h"
#include "screens/apps/AppListScreen.h"
#include "screens/apps/VxmMainViewController.h"
#include "support/TestDevice.h"

namespace {

constexpr int apps = 60;
constexpr int iconCentre = 26;  // points from the left edge of a row

struct AppIconsTest : testing::Test {
    void SetUp() override {
        for (int app = 0; app < apps; ++app) {
            device.install(identifierOf(app), nameOf(app));
            draw(app, 0);
        }
    }

    static std::string nameOf(int app) { return "App " + std::to_string(app / 10) + std::to_string(app % 10); }
    static std::string identifierOf(int app) { return "org.example.app" + std::to_string(app); }
    static QColor colourOf(int app, int edition) {
        return QColor::fromHsv(app * 6, 150 + 100 * edition, 60 + 30 * (app % 5));
    }

    void draw(int app, int edition) {
        const auto folder = device.device().root / "usr/share/pixmaps";
        std::filesystem::create_directories(folder);
        QImage icon(64, 64, QImage::Format_RGB32);
        icon.fill(colourOf(app, edition));
        ASSERT_TRUE(icon.save(QString::fromStdString((folder / (identifierOf(app) + ".png")).string())));
    }

    void openChooser() {
        device.put(store::File::appRules, "<dict><key>com.apple.gamed</key><dict/></dict>");
        device.launch();
        device.tap(292, 20);
    }
    screens::AppListScreen& screen() const { return *qobject_cast<screens::AppListScreen*>(device.screen()); }

    // Which app stands in a row of the table in sight; -1 for a row of another kind.
    static int appIn(const platform::TableViewCell& cell) {
        const QString name = cell.accessibleName();
        return name.startsWith(u"App ") ? name.mid(4).toInt() : -1;
    }

    bool isLoaded(int app) {
        return device.applications().hasCachedIconOfSize(catalog::iconSize, QString::fromStdString(identifierOf(app)));
    }

    // The rows in sight that do not show their own icon, by their apps.
    std::vector<int> wrongRows(int edition) const {
        const platform::TableView& table = *device.table();
        const QImage picture = table.viewport()->grab().toImage();
        std::vector<int> wrong;
        table.forEachCell([&](platform::IndexPath path, const platform::TableViewCell& cell) {
            const QPoint icon(iconCentre, table.rectForRow(path).center().y());
            const int app = appIn(cell);
            if (!picture.rect().contains(icon) || app < 0) return;
            if (picture.pixel(icon) != colourOf(app, edition).rgb()) wrong.push_back(app);
        });
        return wrong;
    }

    // All the icons that the table has asked for have been loaded, and all rows in sight show theirs.
    void expectIcons(int edition = 0) {
        ASSERT_TRUE(QTest::qWaitFor([&] {
            bool areLoaded = true;
            device.table()->forEachCell([&](platform::IndexPath, const platform::TableViewCell& cell) {
                areLoaded = areLoaded && (appIn(cell) < 0 || isLoaded(appIn(cell)));
            });
            return areLoaded;
        }));
        EXPECT_TRUE(QTest::qWaitFor([&] { return wrongRows(edition).empty(); }, 1000))
            << "first of " << wrongRows(edition).size() << ": " << wrongRows(edition).front();
    }

    // The way down and back up: rows come into sight before their icons have been loaded, and later again.
    void expectIconsOnTheWay(const std::function<void(int way)>& go) {
        openChooser();
        ASSERT_EQ(screen().appsArray().size(), std::size_t(apps));
        device.table()->setFocus();
        for (const int way : {-1, 1}) {
            for (int step = 0; step < 10 && !HasFailure(); ++step) {
                go(way);
                expectIcons();
            }
            EXPECT_EQ(device.table()->contentOffset() > 500, way < 0);
        }
    }

    void fling(int way) {
        QWidget* rows = device.table()->viewport();
        const QPoint from(160, rows->height() / 2);
        QTest::mousePress(rows, Qt::LeftButton, {}, from);
        for (int step = 1; step <= 10; ++step) QTest::mouseMove(rows, from + QPoint(0, way * step / 10), 4);
        QTest::mouseRelease(rows, Qt::LeftButton, {}, from + QPoint(0, way));
    }

    TestDevice device;
};

TEST_F(AppIconsTest, AreThereAfterEveryPage) {
    expectIconsOnTheWay([this](int way) { device.key(way < 0 ? Qt::Key_PageDown : Qt::Key_PageUp); });
}

TEST_F(AppIconsTest, AreThereAfterEveryFling) {
    expectIconsOnTheWay([this](int way) { fling(100 * way); });
}

TEST_F(AppIconsTest, AreNotLoadedForRowsThatAreOnlyRead) {
    openChooser();
    const QAccessibleInterface* screen = QAccessible::queryAccessibleInterface(device.table());
    const QAccessibleInterface* rows = screen->child(screen->childCount() - 1);
    for (int row = 0; row < apps; ++row)
        EXPECT_EQ(rows->child(row)->text(QAccessible::Name).toStdString(), nameOf(row));
    expectIcons();
    EXPECT_FALSE(isLoaded(apps - 1));
}

TEST_F(AppIconsTest, ReachTheResultsOfASearchAndTheRowsUnderThem) {
    const auto putRecords = [this](int count) {
        std::string records;
        for (int app = 0; app < count; ++app) records += "<key>" + identifierOf(app) + "</key><dict/>";
        device.put(store::File::appRules, "<dict>" + records + "</dict>");
    };
    putRecords(apps - 1);
    device.launch();
    putRecords(apps);
    ASSERT_TRUE(QTest::qWaitFor([&] { return device.rows(1) == apps; })) << "the list is loaded a second time";
    expectIcons();
    for (int app = 0; app < 20; ++app) draw(app, 1);
    // Nothing is loaded before the results are there: the main thread has been busy.
    static_cast<screens::VxmMainViewController&>(screen()).loadApps();
    screen().searchController()->searchBar()->setText(QStringLiteral("App 0"));
    expectIcons(1);
    screen().searchController()->setActive(false, false);
    expectIcons(1);
}

}  // namespace
