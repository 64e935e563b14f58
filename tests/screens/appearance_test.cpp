// The app's look on a desktop that has another one.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QStyle>
#include <QTemporaryDir>
#include <QTimer>

#include "app/Run.h"
#include "app/SingleInstance.h"
#include "platform/system/DesktopApplicationList.h"
#include "platform/system/Device.h"
#include "platform/system/FixedNetwork.h"
#include "platform/ui/search/SearchDisplayController.h"
#include "store/NotifyCenter.h"

namespace {

struct Nobody : store::NotifyCenter {
    void post(std::string_view) override {}
};

void expectOwnColours(const QWidget& widget) {
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        for (const auto role : {QPalette::Text, QPalette::WindowText})
            EXPECT_EQ(widget.palette().color(group, role), QColor(98, 111, 111)) << widget.metaObject()->className();
        EXPECT_EQ(widget.palette().color(group, QPalette::Base), QColor(Qt::white)) << widget.metaObject()->className();
    }
}

bool isLaunched() {
    const auto windows = QApplication::topLevelWidgets();
    return !windows.isEmpty() && windows.first()->findChild<platform::SearchBar*>();
}

void expectOwnLook() {
    EXPECT_EQ(QApplication::style()->name(), QStringLiteral("fusion"));
    EXPECT_EQ(QApplication::font().pixelSize(), 14);
    EXPECT_EQ(QApplication::font("QMenu").pixelSize(), 14);
    ASSERT_EQ(QApplication::topLevelWidgets().size(), 1);
    QWidget* window = QApplication::topLevelWidgets().first();
    expectOwnColours(*window);
    auto* search = window->findChild<platform::SearchBar*>();
    expectOwnColours(*search->field());
    EXPECT_EQ(search->field()->font().pixelSize(), 14);
    EXPECT_EQ(search->height(), 38);
}

TEST(AppearanceTest, IsItsOwnWhateverTheDesktopWants) {
    qputenv("QT_STYLE_OVERRIDE", "windows");
    int argc = 1;
    char name[] = "app";
    char* argv[] = {name, nullptr};
    QPalette dark(Qt::black);
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) dark.setColor(role, Qt::white);
    dark.setColor(QPalette::Base, Qt::black);
    QApplication::setPalette(dark);
    std::jthread fonts = app::prepare();
    QApplication application(argc, argv);
    QApplication::setFont(QFont(QStringLiteral("Liberation Sans"), 24));
    QApplication::setFont(QFont(QStringLiteral("Liberation Sans"), 24), "QMenu");

    const QTemporaryDir directory;
    const std::string root = directory.path().toStdString();
    Nobody notifyCenter;
    platform::DesktopApplicationList applications({}, root);
    platform::FixedNetwork network(platform::FixedNetwork::Kind::none);
    platform::Device device;
    device.root = root;
    device.notifyCenter = &notifyCenter;
    device.applicationList = &applications;
    device.network = &network;
    QTimer idle;
    QObject::connect(&idle, &QTimer::timeout, &application, [] {
        if (!isLaunched()) return;
        expectOwnLook();
        QApplication::quit();
    });
    idle.start();
    const app::SingleInstance instance(root);
    EXPECT_EQ(app::run(application, device, instance, std::move(fonts)), 0);
}

}  // namespace
