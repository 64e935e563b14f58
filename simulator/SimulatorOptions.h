#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
#include <filesystem>
#include <string_view>
#include <variant>

namespace simulator {

// The simulated network; `host` is that of the machine.
enum class Network { host, none, wifi, wwan };

// The parsed command line.
struct SimulatorOptions {
    std::filesystem::path device;  // the directory that holds the device's file system
    QString model = QStringLiteral("iPhone");
    QSize screen{320, 568};  // points, the system's 20-point status bar included
    Network network = Network::host;
    QString documentationHost;  // empty: the product's own
};

// The command line is invalid; `reason` is one line.
struct Misuse {
    QString reason;
};

// The command line requests help.
struct Help {
    std::string_view text;
};

// `arguments` start with the program's name. Pure: does not access files or environment.
std::variant<SimulatorOptions, Misuse, Help> parseArguments(const QStringList& arguments);

}  // namespace simulator
