#include <QApplication>
#include <QUrl>
#include <iostream>
#include <optional>
#include <string>

#include "app/Run.h"
#include "platform/system/DesktopApplicationList.h"
#include "platform/system/Device.h"
#include "platform/system/SystemNotifyCenter.h"
#include "simulator/DeviceDirectory.h"
#include "simulator/Output.h"
#include "simulator/PrintingNotifyCenter.h"
#include "simulator/SimulatorOptions.h"
#include "store/ConfigurationStore.h"

namespace {

constexpr int misused = 2;

int refuse(std::string_view reason) {
    std::cerr << "VexmorSimulator: " << reason << std::endl;
    return misused;
}

std::optional<std::string> prepare(const std::filesystem::path& root, store::NotifyCenter& notifyCenter) {
    const store::ConfigurationStore files(root, notifyCenter);
    return simulator::prepareDeviceDirectory(root, {files.exportDirectory(), files.listDirectory()});
}

int runOn(const simulator::SimulatorOptions& options, store::NotifyCenter& notifyCenter, QApplication& application) {
    platform::DesktopApplicationList applications(platform::DesktopApplicationList::dataDirectories(options.device),
                                                  application.devicePixelRatio());
    platform::Device device;
    device.root = options.device;
    device.notifyCenter = &notifyCenter;
    device.applicationList = &applications;
    device.openURL = [](const QUrl& address) { simulator::print("opened", address.toEncoded().toStdString()); };
    device.model = options.model;
    device.screen = options.screen;
    return app::run(application, device);
}

}  // namespace

int main(int argc, char** argv) {
    const auto parsed = simulator::parseArguments(QStringList(argv, argv + argc));
    if (const auto* misuse = std::get_if<simulator::Misuse>(&parsed)) return refuse(misuse->reason.toStdString());
    if (const auto* help = std::get_if<simulator::Help>(&parsed)) {
        std::cout << help->text;
        return 0;
    }
    const auto& options = std::get<simulator::SimulatorOptions>(parsed);

    platform::SystemNotifyCenter systemCenter;
    simulator::PrintingNotifyCenter notifyCenter(systemCenter);
    if (const auto problem = prepare(options.device, notifyCenter)) return refuse(*problem);

    app::prepare();
    QApplication application(argc, argv);
    return runOn(options, notifyCenter, application);
}
