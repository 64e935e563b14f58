#include "benchmarks/DeviceFolder.h"
#include "benchmarks/Format.h"
#include "benchmarks/Machine.h"
#include "benchmarks/Peers.h"
#include "benchmarks/Texts.h"
#include "benchmarks/rows/Subjects.h"
#include "benchmarks/workers/Worker.h"

namespace bench {

namespace {

double sizeOf(const std::filesystem::path& file) {
    return static_cast<double>(std::filesystem::file_size(file));
}

std::string of(std::size_t size) {
    return countText(size) + " rules";
}

// The list in the order of the file that a person brought: once the app has written it, it is sorted.
Figures useUnsortedList(DeviceFolder& device, const std::filesystem::path& unsorted) {
    std::filesystem::copy_file(unsorted, device.globalRules(), std::filesystem::copy_options::overwrite_existing);
    settleMachine();
    return runWorker({"rules", device.root()});
}

// A copy of the rules to begin with, beside the device's own folders.
std::filesystem::path keepUnsorted(DeviceFolder& device) {
    std::filesystem::path kept = device.root() / "unsorted.plist";
    std::filesystem::copy_file(device.globalRules(), kept);
    return kept;
}

constexpr const char* copyPeer = "cp + fsync of the file";

}  // namespace

Rows measureSwitch(const Conditions& conditions) {
    DeviceFolder device(conditions.folder);
    device.putRules(hosts(conditions.size));
    const std::filesystem::path file = device.globalRules();
    const Figures figures = medianOfRounds({[&] {
                                                return runWorker({"switch", device.root()});
                                            },
                                            [&] {
                                                return Figures{{"copy", copyAndSync(file)}};
                                            },
                                            [&] {
                                                return runWorker({"libplist", file});
                                            }});
    const std::string work = "change one switch, " + of(conditions.size);
    const double ours = figures.at("switch");
    return {{work, copyPeer, Unit::seconds, ours, figures.at("copy"), atMost(3)},
            {work, "libplist read + write", Unit::seconds, ours, figures.at("libplist"), fasterBy(12)},
            {work + ": peak memory", "the file's size", Unit::bytes, figures.at("peak"), sizeOf(file), atMost(2.2)}};
}

Rows measureRuleList(const Conditions& conditions) {
    // The peers take from 0.9 to 1.3 s, and 30 to 40 ms, for the same: their medians need more than a few.
    constexpr int rounds = 11;
    DeviceFolder device(conditions.folder);
    const std::vector<std::string> texts = hosts(conditions.size);
    device.putRules(texts);
    const std::filesystem::path file = device.globalRules();
    const std::filesystem::path unsorted = keepUnsorted(device);
    const std::filesystem::path lines = conditions.folder / "hosts";
    writeLines(lines, texts);
    const Figures figures = medianOfRounds({[&] {
                                                return runWorker({"rules", device.root()});
                                            },
                                            [&] {
                                                return Figures{{"sort", sortLines(lines)}};
                                            },
                                            [&] {
                                                return Figures{{"grep", countLinesWith("t", lines)}};
                                            },
                                            [&] {
                                                return Figures{{"copy", copyAndSync(file)}};
                                            }},
                                           rounds);
    const auto row = [&](const std::string& work, const std::string& peer, const char* ours, const char* theirs,
                         Goal goal) {
        return Row{work + ", " + of(conditions.size), peer, Unit::seconds, figures.at(ours), figures.at(theirs), goal};
    };
    return {row("open the list, first frame", "sort -f of the hosts", "open", "sort", fasterBy(4)),
            {"open list: memory, " + of(conditions.size), "the file's size", Unit::bytes, figures.at("resident"),
             sizeOf(file), atMost(2.5)},
            row("first keystroke of a search", "grep -icF over the hosts", "keystroke1", "grep", atMost(1)),
            row("second keystroke of a search", "grep -icF over the hosts", "keystroke2", "grep", atMost(0.3)),
            row("add a rule", copyPeer, "add", "copy", atMost(4)),
            row("delete a rule", copyPeer, "delete", "copy", atMost(4)),
            row("edit a rule", copyPeer, "edit", "copy", atMost(4))};
}

Rows measureUse(const Conditions& conditions) {
    DeviceFolder device(conditions.folder);
    device.putRules(hosts(conditions.size));
    const Figures copied = medianOfRounds({[&] { return Figures{{"copy", copyAndSync(device.globalRules())}}; }});
    const Figures used = runWorker({"use", device.root()});
    return {{"longest absence in two minutes of use, " + of(conditions.size), copyPeer, Unit::seconds,
             used.at("absence"), copied.at("copy"), atMost(4)}};
}

Rows measureImport(const Conditions& conditions) {
    DeviceFolder device(conditions.folder);
    device.putHostList(hosts(conditions.size));
    const std::filesystem::path file = device.globalRules();
    const Figures figures = medianOfRounds({[&] {
                                                device.putRules({});
                                                return runWorker({"import", device.root()});
                                            },
                                            [&] {
                                                return Figures{{"copy", copyAndSync(file)}};
                                            }});
    return {{"import a list of " + countText(conditions.size) + " hosts", "cp + fsync of the result", Unit::seconds,
             figures.at("import"), figures.at("copy"), atMost(5)}};
}

Rows measureExport(const Conditions& conditions) {
    DeviceFolder device(conditions.folder);
    device.putRules(hosts(conditions.size));
    const std::filesystem::path file = device.globalRules();
    const Figures figures = medianOfRounds(
        {[&] {
             for (const auto& old : std::filesystem::directory_iterator(device.files().exportDirectory()))
                 std::filesystem::remove(old);
             return runWorker({"export", device.root()});
         },
         [&] {
             return Figures{{"copy", copyAndSync(file)}};
         }});
    const std::string peer = "cp + fsync of the result";
    return {{"export the settings, " + of(conditions.size), peer, Unit::seconds, figures.at("export"),
             figures.at("copy"), atMost(3)},
            {"import the settings, " + of(conditions.size), peer, Unit::seconds, figures.at("import"),
             figures.at("copy"), atMost(3)}};
}

Rows measureGrowth(const Conditions& conditions) {
    constexpr std::size_t times = 100;
    DeviceFolder large(conditions.folder / "large");
    DeviceFolder small(conditions.folder / "small");
    large.putRules(hosts(conditions.size));
    small.putRules(hosts(conditions.size / times));
    const auto measure = [](DeviceFolder& device, const std::filesystem::path& unsorted, const std::string& size) {
        Figures figures;
        for (const Figures& some : {runWorker({"switch", device.root()}), useUnsortedList(device, unsorted)}) {
            for (const auto& [name, figure] : some) figures[size + name] = figure;
        }
        return figures;
    };
    const std::filesystem::path largeFile = keepUnsorted(large);
    const std::filesystem::path smallFile = keepUnsorted(small);
    const Figures figures = medianOfRounds(
        {[&] { return measure(large, largeFile, "large "); }, [&] { return measure(small, smallFile, "small "); }});
    const std::size_t smallSize = conditions.size / times;
    Rows rows;
    for (const std::string name : {"switch", "open", "keystroke1", "keystroke2", "add", "delete", "edit"}) {
        rows.push_back({name + ", time per rule, " + of(conditions.size), "the same, " + of(smallSize), Unit::seconds,
                        figures.at("large " + name) / static_cast<double>(conditions.size),
                        figures.at("small " + name) / static_cast<double>(smallSize), atMost(1.3)});
    }
    return rows;
}

}  // namespace bench
