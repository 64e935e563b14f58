// vexmor-engine [--device DIR] [--rules DIR] [--state DIR] [--interface ADDRESS]
// vexmor-engine explain [--device DIR] [--wifi|--mobile] [--json] APP HOST[:PORT]
#include <iostream>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ConfigurationFiles.h"
#include "engine/Decision.h"
#include "engine/Explanation.h"
#include "engine/service/NetworkWatch.h"
#include "engine/service/Service.h"

namespace {

constexpr int misused = 2;
constexpr std::string_view serviceUsage =
    "usage: vexmor-engine [--device DIR] [--rules DIR] [--state DIR] [--interface ADDRESS]";
constexpr std::string_view explainUsage =
    "usage: vexmor-engine explain [--device DIR] [--wifi|--mobile] [--json] APP HOST[:PORT]";

int refuse(std::string_view reason) {
    std::cerr << "vexmor-engine: " << reason << std::endl;
    return misused;
}

struct Options {
    std::string device = "/";
    bool isOnWiFi = engine::isOnWiFi();
    bool isJson = false;
    std::string app;
    std::string host;
};

std::optional<Options> parse(std::span<char*> arguments) {
    Options options;
    std::vector<std::string> plain;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--device" && i + 1 < arguments.size())
            options.device = arguments[++i];
        else if (argument == "--wifi" || argument == "--mobile")
            options.isOnWiFi = argument == "--wifi";
        else if (argument == "--json")
            options.isJson = true;
        else if (argument.starts_with('-'))
            return {};
        else
            plain.emplace_back(argument);
    }
    if (plain.size() != 2) return {};
    options.app = plain[0];
    options.host = plain[1];
    return options;
}

int explain(const Options& options) {
    const auto destination = engine::parseDestination(options.host);
    if (!destination) return refuse(options.host + " is no host");
    const engine::Connection connection{options.app, *destination, options.isOnWiFi};
    const engine::Decision decision = engine::decide(engine::readConfiguration(options.device), connection);
    if (options.isJson)
        std::cout << engine::jsonOf(decision, options.app, options.host) << std::endl;
    else
        std::cout << options.host << " is " << engine::wordOf(decision.verdict) << " for " << options.app << ": "
                  << engine::reasonOf(decision) << std::endl;
    return 0;
}

std::optional<engine::Places> parsePlaces(std::span<char*> arguments) {
    engine::Places places;
    for (std::size_t i = 0; i + 1 < arguments.size(); i += 2) {
        const std::string_view argument = arguments[i];
        if (argument == "--device")
            places.device = arguments[i + 1];
        else if (argument == "--rules")
            places.rules = arguments[i + 1];
        else if (argument == "--state")
            places.state = arguments[i + 1];
        else if (argument == "--interface")
            places.interface = arguments[i + 1];
        else
            return {};
    }
    return arguments.size() % 2 == 0 ? std::optional(places) : std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
    const auto arguments = std::span(argv, static_cast<std::size_t>(argc)).subspan(1);
    if (!arguments.empty() && std::string_view(arguments.front()) == "explain") {
        const auto options = parse(arguments.subspan(1));
        return options ? explain(*options) : refuse(explainUsage);
    }
    const auto places = parsePlaces(arguments);
    return places ? engine::runService(*places) : refuse(serviceUsage);
}
