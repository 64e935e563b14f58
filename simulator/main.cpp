#include <QApplication>
#include <QFile>
#include <QUrl>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "app/Run.h"
#include "app/SingleInstance.h"
#include "platform/desktop/DataDirectories.h"
#include "platform/system/DesktopApplicationList.h"
#include "platform/system/Device.h"
#include "platform/system/FixedNetwork.h"
#include "platform/system/HostNetwork.h"
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

QStringList argumentsOf(int argc, char** argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i) arguments += QFile::decodeName(argv[i]);
    return arguments;
}

std::optional<std::string> prepare(const std::filesystem::path& root, store::NotifyCenter& notifyCenter) {
    const store::ConfigurationStore files(root, notifyCenter);
    return simulator::prepareDeviceDirectory(root, {files.exportDirectory(), files.listDirectory()});
}

std::unique_ptr<platform::Network> makeNetwork(simulator::Network network) {
    using platform::FixedNetwork;
    switch (network) {
        case simulator::Network::none:
            return std::make_unique<FixedNetwork>(FixedNetwork::Kind::none);
        case simulator::Network::wifi:
            return std::make_unique<FixedNetwork>(FixedNetwork::Kind::wifi);
        case simulator::Network::wwan:
            return std::make_unique<FixedNetwork>(FixedNetwork::Kind::wwan);
        case simulator::Network::host:
            break;
    }
    return std::make_unique<platform::HostNetwork>();
}

int simulate(const simulator::SimulatorOptions& options, int& argc, char** argv) {
    platform::SystemNotifyCenter systemCenter;
    simulator::PrintingNotifyCenter notifyCenter(systemCenter);
    if (const auto problem = prepare(options.device, notifyCenter)) return refuse(*problem);

    const app::SingleInstance instance(options.device);
    if (instance.exitStatus()) return *instance.exitStatus();

    std::jthread fonts = app::prepare();
    QApplication application(argc, argv);
    platform::DesktopApplicationList applications(platform::dataDirectories(options.device), options.device);
    applications.readAhead();
    applications.setScale(application.devicePixelRatio());
    const std::unique_ptr<platform::Network> network = makeNetwork(options.network);
    platform::Device device;
    device.root = options.device;
    device.notifyCenter = &notifyCenter;
    device.applicationList = &applications;
    device.network = network.get();
    device.documentationHost = options.documentationHost;
    device.openURL = [](const QUrl& address) { simulator::print("opened", address.toEncoded().toStdString()); };
    device.model = options.model;
    device.screen = options.screen;
    return app::run(application, device, instance, std::move(fonts));
}

}  // namespace

int main(int argc, char** argv) {
    const auto parsed = simulator::parseArguments(argumentsOf(argc, argv));
    if (const auto* options = std::get_if<simulator::SimulatorOptions>(&parsed)) return simulate(*options, argc, argv);
    if (const auto* misuse = std::get_if<simulator::Misuse>(&parsed)) return refuse(misuse->reason.toStdString());
    if (const auto* help = std::get_if<simulator::Help>(&parsed)) std::cout << help->text;
    return 0;
}
