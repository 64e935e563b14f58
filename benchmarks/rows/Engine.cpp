#include <chrono>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "benchmarks/DeviceFolder.h"
#include "benchmarks/Figures.h"
#include "benchmarks/Format.h"
#include "benchmarks/Process.h"
#include "benchmarks/Texts.h"
#include "benchmarks/rows/Subjects.h"
#include "benchmarks/workers/Worker.h"

namespace bench {

namespace {

namespace fs = std::filesystem;

constexpr const char* app = "org.example.copy";
constexpr double patience = 60;  // seconds

// A device with an app under the firewall, and the folders of a daemon. New lists are made beside the device, and come
// into their place whole.
class FilteredDevice {
public:
    explicit FilteredDevice(const fs::path& folder)
        : device_(folder / "device"), aside_(folder / "aside"), rules_(folder / "rules"), state_(folder / "state") {
        fs::create_directories(rules_);
        fs::create_directories(state_);
        device_.putApp(app, "/usr/bin/cp");
    }

    const fs::path& root() const { return device_.root(); }
    fs::path file() const { return device_.globalRules(); }

    std::vector<std::string> service() const {
        return {programFolder() / "vexmor-engine",
                "--device",
                root(),
                "--rules",
                rules_,
                "--state",
                state_,
                "--interface",
                "unix:///nowhere/none"};
    }

    void prepare(const std::vector<std::string>& hosts) { aside_.putRules(hosts); }
    void change() const { fs::rename(aside_.globalRules(), file()); }

    // Waits until one of the daemon's rules holds the text.
    void waitForRuleWith(const std::string& text) const {
        const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(patience);
        while (!hasRuleWith(text)) {
            if (std::chrono::steady_clock::now() > end)
                throw std::runtime_error("the engine wrote no rule for " + text);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

private:
    bool hasRuleWith(const std::string& text) const {
        for (const auto& entry : fs::directory_iterator(rules_)) {
            std::ostringstream content;
            content << std::ifstream(entry.path()).rdbuf();
            if (entry.path().extension() == ".json" && content.str().find(text) != std::string::npos) return true;
        }
        return false;
    }

    DeviceFolder device_, aside_;
    fs::path rules_, state_;
};

// From a file in its place to the daemon's rule for the one host that is new in it. The list that was there before has
// come to rest in the daemon's files by then.
double secondsUntilInEffect(FilteredDevice& device, std::vector<std::string> list, int round) {
    const std::string name = "new" + std::to_string(round);
    list.front() = name + ".example";
    device.prepare(list);
    return secondsOf([&] {
        device.change();
        device.waitForRuleWith(name);
    });
}

Figures measure(const fs::path& folder, std::size_t size) {
    FilteredDevice device(folder);
    const std::vector<std::string> list = hosts(size);
    device.prepare(list);
    device.change();
    const RunningProgram service(device.service());
    int round = 0;
    device.waitForRuleWith("vexmor-9");  // all rules are there when the service waits for the daemon to read its lists
    Figures figures = medianOfRounds({[&] {
        return Figures{{"change", secondsUntilInEffect(device, list, round++)}};
    }});
    figures["peak"] = service.peakMemory();
    figures["size"] = static_cast<double>(fs::file_size(device.file()));
    return figures;
}

// The program says of an app that it does not know that it is left alone, for which it reads the files and no more.
Figures explain(const fs::path& folder, std::size_t size) {
    DeviceFolder device(folder);
    device.putApp(app, "/usr/bin/cp");
    device.putRules(hosts(size));
    const auto explaining = [&](const char* name, const char* asked) {
        return [&device, name, asked] {
            return Figures{{name, secondsOf([&] {
                                run({programFolder() / "vexmor-engine", "explain", "--device", device.root(), asked,
                                     "nobody.example.org:443"});
                            })}};
        };
    };
    constexpr int rounds = 11;
    return medianOfRounds({explaining("explain", app), explaining("read", "org.example.unknown")}, rounds);
}

// In networks of their own, for all of it takes the daemon.
Figures connect(const fs::path& folder, std::size_t size) {
    DeviceFolder filtered(folder / "filtered"), plain(folder / "plain");
    filtered.putApp(app, programFolder() / "vexmor-bench");
    std::vector<std::string> list = hosts(size);
    list.front() = "host0.denied.example";
    filtered.putRules(list);
    return figuresOf(
        run({"python3", "-B", VEXMOR_CONNECTIONS, programFolder(), filtered.root(), plain.root(), folder}));
}

}  // namespace

Rows measureConnection(const Conditions& conditions) {
    const Figures figures = connect(conditions.folder, conditions.size);
    return {{"a connection through the daemon, " + countText(conditions.size) + " rules", "the daemon without rules",
             Unit::seconds, figures.at("filtered"), figures.at("plain"), atMost(1.2)}};
}

Rows measureEngine(const Conditions& conditions) {
    constexpr std::size_t few = 1000;
    const Figures small = measure(conditions.folder / "small", few);
    const Figures large = measure(conditions.folder / "large", conditions.size);
    const Figures explained = explain(conditions.folder / "explained", conditions.size);
    const auto of = [](std::size_t size) { return countText(size) + " rules"; };
    const std::string many = of(conditions.size);
    return {
        {"a host more to the daemon's rule, " + of(few), "a second", Unit::seconds, small.at("change"), 1, atMost(1)},
        {"a host more to the daemon's rule, " + many, "three seconds", Unit::seconds, large.at("change"), 3, atMost(1)},
        {"the engine's service: peak memory, " + many, "the file's size", Unit::bytes, large.at("peak"),
         large.at("size"), atMost(2.2)},
        {"explain a connection, " + many, "reading the files", Unit::seconds, explained.at("explain"),
         explained.at("read"), atMost(1.5)}};
}

}  // namespace bench
