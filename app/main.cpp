#include <QApplication>
#include <QScreen>
#include <utility>

#include "app/Run.h"
#include "app/SingleInstance.h"
#include "platform/desktop/DataDirectories.h"
#include "platform/system/DesktopAddress.h"
#include "platform/system/DesktopApplicationList.h"
#include "platform/system/DesktopNotification.h"
#include "platform/system/Device.h"
#include "platform/system/HostNetwork.h"
#include "platform/system/SystemNotifyCenter.h"

namespace {

constexpr QSize tallScreen{320, 568};
constexpr QSize shortScreen{320, 480};
constexpr int statusBarHeight = 20;

// The screen size that the app assumes: the tall one if it fits the real screen, else the short one.
QSize deviceScreen(const QScreen& real) {
    return real.availableSize().height() < tallScreen.height() - statusBarHeight ? shortScreen : tallScreen;
}

}  // namespace

int main(int argc, char** argv) {
    platform::Device device;
    const app::SingleInstance instance(device.root);
    if (instance.exitStatus()) return *instance.exitStatus();

    std::jthread fonts = app::prepare();
    QApplication application(argc, argv);
    platform::DesktopApplicationList applications(platform::dataDirectories("/"));
    applications.readAhead();
    applications.setScale(application.devicePixelRatio());
    QApplication::setApplicationName(QStringLiteral("Vexmor"));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.urmeld.Vexmor"));

    platform::SystemNotifyCenter notifyCenter;
    platform::HostNetwork network;
    platform::DesktopNotification notification;
    device.notifyCenter = &notifyCenter;
    device.applicationList = &applications;
    device.network = &network;
    device.openURL = platform::openOnDesktop;
    device.notify = [&](const QString& summary, const QString& body) { notification.post(summary, body); };
    device.screen = deviceScreen(*QGuiApplication::primaryScreen());
    return app::run(application, device, instance, std::move(fonts));
}
