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
#include "store/Schema.h"

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
        std::ofstream(device_.root() / "usr/share/applications" / (std::string(app) + ".desktop"))
            << "[Desktop Entry]\nType=Application\nName=Copy\nExec=/usr/bin/cp\n";
        store::Dictionary apps;
        store::AppRuleRecord::fresh().storeIn(apps, app);
        device_.files().replace(store::File::appRules, apps);
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

}  // namespace

Rows measureEngine(const Conditions& conditions) {
    constexpr std::size_t few = 1000;
    const Figures small = measure(conditions.folder / "small", few);
    const Figures large = measure(conditions.folder / "large", conditions.size);
    const auto of = [](std::size_t size) { return countText(size) + " rules"; };
    const std::string many = of(conditions.size);
    return {
        {"a host more to the daemon's rule, " + of(few), "a second", Unit::seconds, small.at("change"), 1, atMost(1)},
        {"a host more to the daemon's rule, " + many, "three seconds", Unit::seconds, large.at("change"), 3, atMost(1)},
        {"the engine's service: peak memory, " + many, "the file's size", Unit::bytes, large.at("peak"),
         large.at("size"), atMost(2.2)}};
}

}  // namespace bench
