#include "benchmarks/Memory.h"
#include "benchmarks/workers/App.h"
#include "benchmarks/workers/Workers.h"

namespace bench {

Figures openLog(const Arguments& arguments) {
    constexpr int logSection = 4;
    App app(arguments.at(0));
    app.openSettings();
    const double seconds = app.clock().untilPainted(anyOf("screens::LogTextView"), [&] { app.tapRow(logSection, 0); });
    return {{"log", seconds}, {"peak", peakMemory()}};
}

}  // namespace bench
