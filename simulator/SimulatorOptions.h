#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
#include <filesystem>
#include <string_view>
#include <variant>

namespace simulator {

// The network that the device is to believe it has; `host` is the network of the machine that the simulator runs on.
enum class Network { host, none, wifi, wwan };

// What the command line asks for.
struct SimulatorOptions {
    std::filesystem::path device;  // the directory that holds the device's file system
    QString model = QStringLiteral("iPhone");
    QSize screen{320, 568};  // points, the system's 20-point status bar included
    Network network = Network::host;
    QString documentationHost;  // empty: the product's own
};

// The command line is not one of ours; says why, in one line.
struct Misuse {
    QString reason;
};

// The command line asks for help: the text to show.
struct Help {
    std::string_view text;
};

// `arguments` begin with the program's name. Looks at nothing but the arguments.
std::variant<SimulatorOptions, Misuse, Help> parseArguments(const QStringList& arguments);

}  // namespace simulator
