// The service with the real daemon: what the files say is what two programs meet, one of them under the firewall.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <functional>
#include <thread>

#include "engine/DaemonInNamespace.h"
#include "engine/Entries.h"
#include "store/Files.h"
#include "store/Schema.h"
#include "store/SharedFiles.h"
#include "store/plist/PropertyListFile.h"
#include "store/text/Utf.h"

namespace {

namespace fs = std::filesystem;
namespace keys = store::keys;
using std::chrono::steady_clock;
using testing_support::DaemonInNamespace;
using testing_support::entries;

constexpr std::uint16_t port = 8080;

// A device with two apps, whose programs are copies of an interpreter that is an executable of its own.
class Device {
public:
    Device() {
        fs::create_directories(store::preferencesFolder(root()));
        fs::create_directories(folder_ / "rules");
        fs::create_directories(root() / "usr/share/applications");
        fs::create_directories(folder_ / "programs");
        for (const std::string app : {"first", "second"}) {
            fs::copy_file(fs::canonical("/usr/bin/python3"), program(app));
            store::put(root() / "usr/share/applications" / (app + ".desktop"),
                       "[Desktop Entry]\nType=Application\nName=" + app + "\nExec=" + program(app).string() + " %u\n");
        }
    }

    fs::path root() const { return folder_ / "device"; }
    fs::path rules() const { return folder_ / "rules"; }
    fs::path state() const { return folder_ / "state"; }
    std::string interface() const { return "unix://" + (folder_ / "interface").string(); }
    fs::path program(const std::string& app) const { return folder_ / "programs" / app; }

    // Changes the first app's record, and writes what the app would write.
    void change(const std::function<void(store::AppRuleRecord&)>& change) {
        change(record_);
        record_.storeIn(apps_, "first");
        store::writeDictionary(store::pathOf(store::File::appRules, root()), apps_);
    }
    void changeAll(const std::function<void(store::Dictionary&)>& change) {
        change(global_);
        store::writeDictionary(store::pathOf(store::File::globalRules, root()), global_);
    }
    void removeApp() {
        apps_.remove("first");
        store::writeDictionary(store::pathOf(store::File::appRules, root()), apps_);
    }

private:
    store::TemporaryDirectory folder_;
    store::AppRuleRecord record_ = store::AppRuleRecord::fresh();
    store::Dictionary apps_, global_;
};

class RunningService {
public:
    explicit RunningService(const Device& device) {
        process_ = fork();
        if (process_ == 0) {
            execl(VEXMOR_ENGINE, VEXMOR_ENGINE, "--device", device.root().c_str(), "--rules", device.rules().c_str(),
                  "--state", device.state().c_str(), "--interface", device.interface().c_str(), nullptr);
            _exit(127);
        }
    }
    ~RunningService() { end(SIGTERM); }

    int end(int signal) {
        if (process_ < 0) return -1;
        kill(process_, signal);
        int status = 0;
        waitpid(process_, &status, 0);
        process_ = -1;
        return status;
    }

private:
    pid_t process_ = -1;
};

std::string textOfLog(const Device& device) {
    const std::string bytes = store::contentOf(store::logFile(device.root()));
    std::size_t malformedAt = 0;
    if (bytes.size() < 2) return {};
    return store::utf8FromUtf16(std::string_view(bytes).substr(2), store::ByteOrder::little, malformedAt).value_or("");
}

class ServiceTest : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string obstacle = DaemonInNamespace::obstacle(); !obstacle.empty()) GTEST_SKIP() << obstacle;
        daemon_ = std::make_unique<DaemonInNamespace>(
            DaemonInNamespace::Setup{.rules = device_.rules(), .interfaceAddress = device_.interface()});
        ASSERT_EQ(daemon_->failure(), "");
        ASSERT_TRUE(daemon_->listen(port));
    }

    bool reaches(const std::string& app, const std::string& host) const {
        return daemon_->run(DaemonInNamespace::connecting(device_.program(app), host, port)).status == 0;
    }

    // Waits until the first app reaches the host or no longer does, 15 s at most: the daemon looks at files of hosts
    // every 4 s. The second app always does.
    void expect(const std::string& host, bool reached, const std::string& after) const {
        const auto end = steady_clock::now() + std::chrono::seconds(15);
        while (reaches("first", host) != reached && steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_EQ(reaches("first", host), reached) << after << ": " << host << daemon_->log();
        // Once more: the daemon lets all connections wait for up to 4 s when a file of hosts goes.
        EXPECT_TRUE(reaches("second", host) || reaches("second", host)) << after << ": " << host;
    }

    Device device_;
    std::unique_ptr<DaemonInNamespace> daemon_;
};

TEST_F(ServiceTest, ListsAreWhatTheProgramMeets) {
    RunningService service(device_);
    using Hosts = std::vector<std::string>;
    using Act = std::function<void()>;
    const auto own = [&](std::string_view key, const Hosts& rules) -> Act {
        return [=, this] { device_.change([&](auto& record) { record.dictionary().set(key, entries(rules)); }); };
    };
    const auto global = [&](const Hosts& rules) -> Act {
        return [=, this] { device_.changeAll([&](auto& all) { all.set(keys::globalDeny, entries(rules)); }); };
    };
    const Act deniesAllButAPort = [&] {
        device_.change([](auto& record) {
            record = store::AppRuleRecord::fresh();
            record.setBlanketMode(store::BlanketMode::denyAll);
            record.setFlag(keys::stillUseRules, true);
        });
        own(keys::allow, {"good.example:8080", "other.example:80"})();
    };
    const Act fresh = [&] { device_.change([](auto& record) { record = store::AppRuleRecord::fresh(); }); };
    Hosts many;
    for (int i = 0; i < 20000; ++i) many.push_back("host" + std::to_string(i) + ".example");
    Hosts others = many;
    others.front() = "bad.example";

    const std::tuple<const char*, Act, Hosts, Hosts> steps[] = {
        // denied, allowed
        {"an address denied", own(keys::deny, {"192.0.2.1"}), {"bad.example"}, {}},
        {"all denied but a port", deniesAllButAPort, {"bad.example", "other.example"}, {"good.example"}},
        {"nothing in particular", fresh, {}, {"host7.example"}},
        {"many hosts", global(many), {"host7.example", "host19999.example"}, {"bad.example"}},
        {"one gone, one more", global(others), {"bad.example", "host19999.example"}, {"host0.example"}},
        {"removed", [&] { device_.removeApp(); }, {}, {"host7.example", "bad.example"}},
    };
    for (const auto& [what, change, denied, allowed] : steps) {
        change();
        for (const std::string& host : denied) expect(host, false, what);
        for (const std::string& host : allowed) expect(host, true, what);
    }
    EXPECT_EQ(service.end(SIGTERM), 0);
    EXPECT_EQ(store::namesIn(device_.rules()).size(), 1U) << "more than the last rule is left";
    EXPECT_TRUE(store::namesIn(device_.state()).empty());
}

TEST_F(ServiceTest, WhatIsDeniedStaysDenied) {
    store::put(device_.rules() / "theirs.json", "{}");
    device_.change([](auto& record) { record.dictionary().set(keys::deny, entries(std::vector{"bad.example"})); });
    {
        RunningService service(device_);
        expect("bad.example", false, "the service started");
        service.end(SIGKILL);
        expect("bad.example", false, "the service was killed");
        // What a killed one may leave behind, and what changed meanwhile.
        store::put(device_.rules() / "vexmor-2-first-0003a-00000-0-old.json", R"({"action": "allow"})");
        store::put(device_.rules() / ".vexmor-9.json.vxm-abcdefghijkl", "");
        device_.change([](auto& record) {
            record.dictionary().set(keys::deny, entries(std::vector{"bad.example", "b.example"}));
        });
    }
    RunningService service(device_);
    expect("b.example", false, "the service started again");
    daemon_->stop(SIGKILL);
    daemon_->start();
    expect("bad.example", false, "the daemon started again");
    EXPECT_TRUE(reaches("first", "good.example"));
    const auto names = store::namesIn(device_.rules());
    EXPECT_EQ(names.size(), 3U) << testing::PrintToString(names);
    EXPECT_TRUE(names.contains("theirs.json"));
}

TEST_F(ServiceTest, TheLogShowsWhatTheDaemonDecided) {
    device_.change([](auto& record) { record.dictionary().set(keys::deny, entries(std::vector{"bad.example"})); });
    RunningService service(device_);
    expect("bad.example", false, "the service started");
    EXPECT_FALSE(fs::exists(store::logFile(device_.root()))) << "the log is off";
    device_.changeAll([](auto& all) { all.set(keys::log, store::Value(true)); });
    // A lookup that is denied, and a connection that is allowed; of the other app nothing.
    const auto hasLine = [&](const std::string& line) {
        return textOfLog(device_).find(' ' + line + '\n') != std::string::npos;
    };
    EXPECT_TRUE(DaemonInNamespace::waitFor([&] {
        EXPECT_FALSE(reaches("first", "bad.example"));
        EXPECT_TRUE(reaches("first", "good.example"));
        EXPECT_TRUE(reaches("second", "bad.example"));
        return hasLine("first → bad.example:53 denied") && hasLine("first → good.example:8080");
    })) << textOfLog(device_);
    EXPECT_EQ(textOfLog(device_).find("second"), std::string::npos) << textOfLog(device_);
}

}  // namespace
