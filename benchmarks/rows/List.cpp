#include "benchmarks/DeviceFolder.h"
#include "benchmarks/Figures.h"
#include "benchmarks/Format.h"
#include "benchmarks/Peers.h"
#include "benchmarks/Process.h"
#include "benchmarks/Texts.h"
#include "benchmarks/rows/Subjects.h"

namespace bench {

// Finding repeated lines is most of the work, and what the peer does as well.
Rows measureList(const Conditions& conditions) {
    DeviceFolder device(conditions.folder);
    const std::filesystem::path published = conditions.folder / "published";
    writeLines(published, hosts(conditions.size));
    const std::string program = programFolder() / "vexmor-list";
    const Figures figures = medianOfRounds(
        {[&] {
             return Figures{
                 {"list", secondsOf([&] {
                      run({"sh", "-c", R"("$0" --device "$1" hosts.txt < "$2")", program, device.root(), published});
                  })}};
         },
         [&] {
             return Figures{{"sort", sortDistinctLines(published)}};
         }});
    return {{"take a published list of " + countText(conditions.size) + " hosts", "sort -u of its lines", Unit::seconds,
             figures.at("list"), figures.at("sort"), atMost(1)}};
}

}  // namespace bench
