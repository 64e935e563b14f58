#include "simulator/SimulatorOptions.h"

#include <QCommandLineParser>
#include <QFile>
#include <QRegularExpression>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

using namespace Qt::StringLiterals;

namespace simulator {
namespace {

constexpr std::string_view usage =
    "usage: VexmorSimulator --device DIR [--model iPhone] [--screen 320x568] [--network host|none|wifi|wwan]\n"
    "                       [--documentation-host HOST]\n"
    "Runs the app on a device that lives in a directory, and prints what the device would do.\n";

constexpr QSize smallestScreen{320, 480};

std::optional<QSize> screenFrom(const QString& text) {
    static const QRegularExpression form(u"^(\\d{3,4})x(\\d{3,4})$"_s);
    const QRegularExpressionMatch match = form.match(text);
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    if (size.width() < smallestScreen.width() || size.height() < smallestScreen.height()) return std::nullopt;
    return size;
}

std::optional<Network> networkFrom(const QString& text) {
    static const std::array networks = {std::pair(u"host"_s, Network::host), std::pair(u"none"_s, Network::none),
                                        std::pair(u"wifi"_s, Network::wifi), std::pair(u"wwan"_s, Network::wwan)};
    for (const auto& [name, network] : networks) {
        if (name == text) return network;
    }
    return std::nullopt;
}

}  // namespace

std::variant<SimulatorOptions, Misuse, Help> parseArguments(const QStringList& arguments) {
    const QCommandLineOption device(u"device"_s, {}, u"DIR"_s);
    const QCommandLineOption model(u"model"_s, {}, u"NAME"_s, u"iPhone"_s);
    const QCommandLineOption screen(u"screen"_s, {}, u"WxH"_s, u"320x568"_s);
    const QCommandLineOption network(u"network"_s, {}, u"KIND"_s, u"host"_s);
    const QCommandLineOption documentationHost(u"documentation-host"_s, {}, u"HOST"_s);
    const QCommandLineOption help(u"help"_s);

    QCommandLineParser parser;
    parser.addOptions({device, model, screen, network, documentationHost, help});
    if (!parser.parse(arguments)) return Misuse{parser.errorText()};
    if (parser.isSet(help)) return Help{usage};
    if (!parser.positionalArguments().isEmpty())
        return Misuse{u"unexpected argument '%1'"_s.arg(parser.positionalArguments().constFirst())};
    if (parser.value(device).isEmpty()) return Misuse{u"--device DIR is missing"_s};

    const std::optional<QSize> screenSize = screenFrom(parser.value(screen));
    if (!screenSize) return Misuse{u"--screen takes WxH from 320x480 on, not '%1'"_s.arg(parser.value(screen))};
    const std::optional<Network> kind = networkFrom(parser.value(network));
    if (!kind) return Misuse{u"--network takes host, none, wifi or wwan, not '%1'"_s.arg(parser.value(network))};

    SimulatorOptions options;
    options.device = QFile::encodeName(parser.value(device)).toStdString();
    options.model = parser.value(model);
    options.screen = *screenSize;
    options.network = *kind;
    options.documentationHost = parser.value(documentationHost);
    return options;
}

}  // namespace simulator
