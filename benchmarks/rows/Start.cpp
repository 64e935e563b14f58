#include <chrono>

#include "benchmarks/DesktopApps.h"
#include "benchmarks/DeviceFolder.h"
#include "benchmarks/Process.h"
#include "benchmarks/rows/Subjects.h"
#include "benchmarks/workers/Worker.h"
#include "store/Schema.h"

namespace bench {

namespace {

constexpr std::size_t configuredApps = 300;
constexpr int rounds = 31;

void configure(DeviceFolder& device, const std::vector<std::string>& identifiers) {
    store::Dictionary rules;
    rules.set(store::keys::marker, store::Value(true));
    for (const std::string& identifier : identifiers) store::AppRuleRecord::fresh().storeIn(rules, identifier);
    device.files().replace(store::File::appRules, rules);
}

Figures firstFrameOf(const std::string& name, const char* program, const std::vector<std::string>& arguments) {
    const std::chrono::nanoseconds now = std::chrono::steady_clock::now().time_since_epoch();
    std::vector<std::string> command{programFolder() / program, std::to_string(now.count())};
    command.insert(command.end(), arguments.begin(), arguments.end());
    Figures figures;
    for (const auto& [what, figure] : figuresOf(run(command))) figures[name + what] = figure;
    return figures;
}

}  // namespace

Rows measureStart(const Conditions& conditions) {
    DeviceFolder device(conditions.folder);
    configure(device, installApps(device.root(), configuredApps));
    const Figures figures = medianOfRounds({[&] { return firstFrameOf("our ", "vexmor-bench-start", {device.root()}); },
                                            [] { return firstFrameOf("bare ", "vexmor-bench-bare-window", {}); }},
                                           rounds);
    const std::string work = "start to first frame, " + std::to_string(configuredApps) + " configured apps";
    const std::string peer = "a bare window with a label";
    return {
        {work, peer, Unit::seconds, figures.at("our time"), figures.at("bare time"), atMost(1.5)},
        {work + ": memory", peer, Unit::bytes, figures.at("our resident"), figures.at("bare resident"), atMost(1.6)}};
}

}  // namespace bench
