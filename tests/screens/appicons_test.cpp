// Icons come to the rows of the main screen and of the chooser, wherever those are when an icon has been loaded: real
// files, loaded by the real queue, seen in the picture of the rows.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QColor>
#include <QImage>
#include <QTest>
#include <functional>

#include "catalog/VxmAppList.h"
#include "platform/system/DesktopApplicationList.h"
#include "platform/ui/search/SearchDisplayController.h"
#include "platform/ui/table/TableView.h"
#include "screens/apps/AppListScreen.h"
#include "screens/apps/VxmMainViewController.h"
#include "support/TestDevice.h"

namespace {

constexpr int apps = 60;
constexpr int iconCentre = 26;  // points from the left edge of a row

class AppIconsTest : public testing::Test {
protected:
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
    int appIn(platform::IndexPath row) const {
        const bool isMain = qobject_cast<screens::VxmMainViewController*>(device.screen());
        const bool isResult = device.table() != screen().table();
        if (isMain && !isResult && row.section == 0) return -1;
        const auto& listed = isResult ? screen().filteredApps() : screen().appsArray();
        return std::stoi(listed.at(std::size_t(row.row)).displayName.substr(4));
    }

    bool isLoaded(int app) {
        return device.applications().hasCachedIconOfSize(catalog::iconSize, QString::fromStdString(identifierOf(app)));
    }

    // The rows in sight that do not show their own icon, by their apps.
    std::vector<int> wrongRows(int edition) const {
        const platform::TableView& table = *device.table();
        const QImage picture = table.viewport()->grab().toImage();
        std::vector<int> wrong;
        table.forEachCell([&](platform::IndexPath path, platform::TableViewCell&) {
            const QPoint icon(iconCentre, table.rectForRow(path).center().y());
            if (!picture.rect().contains(icon) || appIn(path) < 0) return;
            if (picture.pixel(icon) != colourOf(appIn(path), edition).rgb()) wrong.push_back(appIn(path));
        });
        return wrong;
    }

    // All the icons that the table has asked for have been loaded, and all rows in sight show theirs.
    void expectIcons(int edition = 0) {
        ASSERT_TRUE(QTest::qWaitFor([&] {
            bool areLoaded = true;
            device.table()->forEachCell([&](platform::IndexPath path, platform::TableViewCell&) {
                areLoaded = areLoaded && (appIn(path) < 0 || isLoaded(appIn(path)));
            });
            return areLoaded;
        }));
        EXPECT_TRUE(QTest::qWaitFor([&] { return wrongRows(edition).empty(); }, 1000))
            << "first of " << wrongRows(edition).size() << ": " << wrongRows(edition).front();
    }

    void expectIconsOnTheWay(const std::function<void()>& go) {
        openChooser();
        ASSERT_EQ(screen().appsArray().size(), std::size_t(apps));
        device.table()->setFocus();
        for (int step = 0; step < 10 && !HasFailure(); ++step) {
            go();
            expectIcons();
        }
        EXPECT_GT(device.table()->contentOffset(), 500);
    }

    // With the finger's speed when it leaves, or without.
    void scroll(int way, bool flings) {
        QWidget* rows = device.table()->viewport();
        const QPoint from(160, rows->height() / 2);
        QTest::mousePress(rows, Qt::LeftButton, {}, from);
        for (int step = 1; step <= 10; ++step)
            QTest::mouseMove(rows, from + QPoint(0, way * step / 10), flings ? 4 : 0);
        QTest::mouseRelease(rows, Qt::LeftButton, {}, from + QPoint(0, way));
    }

    TestDevice device;
};

TEST_F(AppIconsTest, AreThereAfterEveryPage) {
    expectIconsOnTheWay([this] { device.key(Qt::Key_PageDown); });
}

TEST_F(AppIconsTest, AreThereUnderTheFinger) {
    expectIconsOnTheWay([this] { scroll(-55, false); });
}

TEST_F(AppIconsTest, AreThereAfterEveryFling) {
    expectIconsOnTheWay([this] { scroll(-100, true); });
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

TEST_F(AppIconsTest, ReachTheResultsOfASearch) {
    openChooser();
    expectIcons();
    ASSERT_FALSE(isLoaded(59));
    device.tap(120, 59);
    device.type(QStringLiteral("App 5"));
    ASSERT_EQ(screen().filteredApps().size(), 10U);
    expectIcons();
}

TEST_F(AppIconsTest, ReachTheRowsUnderTheResultsOfASearch) {
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
