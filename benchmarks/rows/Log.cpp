#include "benchmarks/DeviceFolder.h"
#include "benchmarks/Format.h"
#include "benchmarks/Peers.h"
#include "benchmarks/rows/Subjects.h"
#include "benchmarks/workers/Worker.h"

namespace bench {

Rows measureLog(const Conditions& conditions) {
    constexpr std::size_t bytesPerRule = 100;
    DeviceFolder device(conditions.folder);
    device.putLog(conditions.size * bytesPerRule);
    const std::filesystem::path log = device.files().logFile();
    const Figures figures = medianOfRounds({[&] {
                                                return runWorker({"log", device.root()});
                                            },
                                            [&] {
                                                return Figures{{"iconv", utf8FromUtf16(log)}};
                                            }});
    const auto size = static_cast<double>(std::filesystem::file_size(log));
    const std::string work = "open the log, " + figureText(size, Unit::bytes);
    return {{work, "iconv of it to UTF-8", Unit::seconds, figures.at("log"), figures.at("iconv"), atMost(1.5)},
            {work + ": peak memory", "the file's size", Unit::bytes, figures.at("peak"), size, atMost(3)}};
}

}  // namespace bench
