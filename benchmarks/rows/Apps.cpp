#include "benchmarks/DesktopApps.h"
#include "benchmarks/DeviceFolder.h"
#include "benchmarks/rows/Subjects.h"
#include "benchmarks/workers/Worker.h"

namespace bench {

Rows measureChooser(const Conditions& conditions) {
    constexpr std::size_t entries = 2000;
    const DeviceFolder device(conditions.folder);
    installApps(device.root(), entries);
    const Figures figures = medianOfRounds({[&] {
                                                return runWorker({"chooser", device.root()});
                                            },
                                            [&] {
                                                return runWorker({"glib", device.root() / "usr/share"});
                                            }});
    return {{"open the chooser on 2,000 desktop entries", "GLib's listing of them", Unit::seconds,
             figures.at("chooser"), figures.at("glib"), atMost(1.5)}};
}

Rows measureIcons(const Conditions& conditions) {
    constexpr std::size_t icons = 500;
    constexpr double sixtiethOfASecond = 0.016;
    constexpr int rounds = 11;  // one stall of the machine makes the longest frame of a whole round
    const DeviceFolder device(conditions.folder);
    installApps(device.root(), icons);
    const Figures figures = medianOfRounds({[&] { return runWorker({"icons", device.root()}); }}, rounds);
    return {{"scroll 500 uncached icons, longest frame", "a frame at 60 Hz", Unit::seconds, figures.at("longest"),
             sixtiethOfASecond, atMost(1)}};
}

}  // namespace bench
