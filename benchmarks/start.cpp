// The app, up to the first frame that shows its rows.
#include <QApplication>
#include <utility>

#include "app/Run.h"
#include "app/SingleInstance.h"
#include "benchmarks/FirstFrame.h"
#include "platform/desktop/DataDirectories.h"
#include "platform/system/DesktopApplicationList.h"
#include "platform/system/Device.h"
#include "platform/system/HostNetwork.h"
#include "platform/system/SystemNotifyCenter.h"

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const app::SingleInstance instance(argv[2]);
    std::jthread fonts = app::prepare();
    QApplication application(argc, argv);
    const bench::FirstFrame firstFrame("views::VxmAppCell", argv[1]);
    platform::DesktopApplicationList applications(platform::dataDirectories(argv[2]), argv[2]);
    applications.readAhead();
    applications.setScale(application.devicePixelRatio());
    platform::SystemNotifyCenter notifyCenter;
    platform::HostNetwork network;
    platform::Device device;
    device.root = argv[2];
    device.notifyCenter = &notifyCenter;
    device.applicationList = &applications;
    device.network = &network;
    device.openURL = [](const QUrl&) {};
    return app::run(application, device, instance, std::move(fonts));
}
