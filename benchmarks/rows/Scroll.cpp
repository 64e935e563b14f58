#include "benchmarks/DeviceFolder.h"
#include "benchmarks/Format.h"
#include "benchmarks/Texts.h"
#include "benchmarks/rows/Subjects.h"
#include "benchmarks/workers/Worker.h"

namespace bench {

namespace {

constexpr std::size_t fewRules = 100;
constexpr double frameAt1x = 0.002;
constexpr double frameAt3x = 0.004;

Work scrollingOf(const DeviceFolder& device, const char* scale, const std::string& name) {
    return [&device, scale, name] {
        Figures figures;
        for (const auto& [way, seconds] : runWorker({"scroll", device.root(), scale})) figures[name + way] = seconds;
        return figures;
    };
}

}  // namespace

Rows measureScroll(const Conditions& conditions) {
    DeviceFolder many(conditions.folder / "many");
    DeviceFolder few(conditions.folder / "few");
    many.putRules(hosts(conditions.size));
    few.putRules(hosts(fewRules));
    const Figures figures =
        medianOfRounds({scrollingOf(many, "1", "many "), scrollingOf(few, "1", "few "), scrollingOf(many, "3", "3x ")});
    Rows rows;
    for (const std::string way : {"wheel", "fling", "page", "thumb"}) {
        rows.push_back({"scroll by " + way + ", a frame, " + countText(conditions.size) + " rules", "100 rules",
                        Unit::seconds, figures.at("many " + way), figures.at("few " + way), atMost(1.2)});
    }
    rows.push_back({"scroll, a frame at 1x", "2 ms", Unit::seconds, figures.at("many all"), frameAt1x, atMost(1)});
    rows.push_back({"scroll, a frame at 3x", "4 ms", Unit::seconds, figures.at("3x all"), frameAt3x, atMost(1)});
    return rows;
}

}  // namespace bench
