// The daemon's reports and questions, from the real daemon in a network of its own.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <csignal>
#include <mutex>

#include "engine/DaemonInNamespace.h"
#include "engine/daemon/DaemonInterface.h"
#include "store/files/Descriptor.h"

namespace {

using engine::DaemonInterface;
using engine::Report;
using engine::Verdict;
using testing_support::DaemonInNamespace;

constexpr const char* python = "/usr/bin/python3";
constexpr std::uint16_t port = 8080;

std::string ruleFor(const std::string& name, const std::string& action, const std::string& host) {
    return R"({"name": ")" + name + R"(", "enabled": true, "action": ")" + action +
           R"(", "duration": "always", "precedence": true, "operator": {"type": "simple", "operand": "dest.host",)" +
           R"( "data": ")" + host + R"("}})";
}

// An interface, what it was told, and the answers it gives: a host "ugly.example" is denied.
class Interface {
public:
    explicit Interface(const std::string& address) {
        std::string failure;
        interface_ = DaemonInterface::listen(
            address,
            [this](std::vector<Report> reports) {
                const std::lock_guard lock(mutex_);
                std::move(reports.begin(), reports.end(), std::back_inserter(reports_));
                changed_.notify_all();
            },
            [](const Report& report) {
                return report.destination.name == "ugly.example" ? Verdict::deny : Verdict::leave;
            },
            failure);
        EXPECT_TRUE(interface_) << failure;
    }

    bool isConnected() const { return interface_->isConnected(); }

    // The reports of connections to a host's port, as soon as there is one; none after half a minute without.
    std::vector<Report> reportsOf(const std::string& host, std::uint16_t hostPort) {
        std::vector<Report> found;
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, std::chrono::seconds(30), [&] {
            std::copy_if(reports_.begin(), reports_.end(), std::back_inserter(found), [&](const Report& report) {
                return report.destination.port == hostPort &&
                       (report.destination.name == host || report.destination.address == host);
            });
            return !found.empty();
        });
        return found;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Report> reports_;
    std::unique_ptr<DaemonInterface> interface_;
};

class Daemon : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string obstacle = DaemonInNamespace::obstacle(); !obstacle.empty()) GTEST_SKIP() << obstacle;
        store::put(rules_ / "good.json", ruleFor("good", "allow", "good.example"));
        store::put(rules_ / "bad.json", ruleFor("bad", "deny", "bad.example"));
        daemon_ = std::make_unique<DaemonInNamespace>(
            DaemonInNamespace::Setup{.rules = rules_.path(), .interfaceAddress = address_});
        ASSERT_EQ(daemon_->failure(), "");
        ASSERT_TRUE(daemon_->listen(port));
    }

    bool connects(const Interface& interface) {
        return daemon_->waitFor([&] { return interface.isConnected(); });
    }

    int connect(const std::string& host) {
        auto arguments = DaemonInNamespace::connecting(python, host, port);
        arguments.insert(arguments.begin(), {"env", "FLATPAK_ID=org.example.Mail"});
        return daemon_->run(arguments).status;
    }

    store::TemporaryDirectory rules_;
    store::TemporaryDirectory run_;
    std::string address_ = "unix://" + (run_ / "socket").string();
    std::unique_ptr<DaemonInNamespace> daemon_;
};

TEST_F(Daemon, ReportsEachConnectionOnceAndWhatBecameOfIt) {
    Interface interface(address_);
    ASSERT_TRUE(connects(interface)) << daemon_->log();
    EXPECT_EQ(connect("bad.example"), 1);
    EXPECT_EQ(connect("good.example"), 0);
    EXPECT_EQ(connect("192.0.2.9"), 0);
    EXPECT_EQ(connect("ugly.example"), 1);

    const struct {
        std::string host;
        std::string protocol;
        std::string rule;
        std::uint16_t port;
        bool isAllowed;
    } cases[] = {
        {"good.example", "tcp", "good", port, true},
        {"bad.example", "udp", "bad", 53, false},  // its lookup fails already
        {"192.0.2.9", "tcp", "answer", port, true},
        {"ugly.example", "udp", "answer", 53, false},
    };
    for (const auto& [host, protocol, rule, itsPort, isAllowed] : cases) {
        const auto reports = interface.reportsOf(host, itsPort);
        ASSERT_FALSE(reports.empty()) << host << '\n' << daemon_->log();
        const Report& report = reports.front();
        EXPECT_EQ(report.protocol, protocol) << host;
        EXPECT_EQ(report.rule, rule) << host;
        EXPECT_EQ(report.isAllowed, isAllowed) << host;
        EXPECT_EQ(report.process.path, std::filesystem::canonical(python)) << host;
        EXPECT_TRUE(std::ranges::count(report.process.arguments, host)) << host;
        EXPECT_EQ(report.process.environment.count("FLATPAK_ID"), 1U) << host;
        const auto age = std::chrono::system_clock::now() - report.time;
        EXPECT_TRUE(age > std::chrono::seconds(0) && age < std::chrono::hours(1)) << host;
    }
    // By now later connections have been reported, so repeated events would have been seen.
    EXPECT_EQ(interface.reportsOf("good.example", port).size(), 1U);
    EXPECT_EQ(interface.reportsOf("good.example", port).front().destination.address, "192.0.2.1");
}

TEST_F(Daemon, ComesBack) {
    auto interface = std::make_unique<Interface>(address_);
    ASSERT_TRUE(connects(*interface)) << daemon_->log();
    interface.reset();  // while the daemon holds the connection
    EXPECT_FALSE(std::filesystem::exists(run_ / "socket"));
    interface = std::make_unique<Interface>(address_);
    EXPECT_TRUE(connects(*interface)) << daemon_->log();
    daemon_->stop(SIGKILL);
    EXPECT_TRUE(daemon_->waitFor([&] { return !interface->isConnected(); }));
    daemon_->start();
    ASSERT_EQ(daemon_->failure(), "");
    EXPECT_TRUE(connects(*interface)) << daemon_->log();
}

// Leaves a socket that nobody listens at any more.
void leaveSocket(const std::filesystem::path& path) {
    const store::Descriptor server(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.string().copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(server.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
}

TEST(DaemonInterface, ListensForItsUserAloneAndWhereNobodyElseDoes) {
    const store::TemporaryDirectory folder;
    const std::string there = "unix://" + folder.path().string();
    store::put(folder / "file", "text");
    leaveSocket(folder / "stale");
    std::string failure;
    const auto nothing = [](auto&&) {};
    const auto never = [](auto&&) { return Verdict::deny; };
    const auto other = DaemonInterface::listen(there + "/other", nothing, never, failure);
    ASSERT_TRUE(other) << failure;

    const struct {
        std::string address;
        std::string failure;
    } cases[] = {
        {there + "/fresh", ""},
        {there + "/stale", ""},
        {there + "/other", "somebody else listens there"},
        {there + "/file", "there is something that is no socket"},
        {there + "/missing/socket", "the socket cannot be made"},
        {there + '/' + std::string(100, 'x'), "this is no address of a socket"},
        {"unix://relative", "this is no address of a socket"},
        {"127.0.0.1:50051", "this is no address of a socket"},
    };
    for (const auto& [address, expected] : cases) {
        failure.clear();
        const auto interface = DaemonInterface::listen(address, nothing, never, failure);
        EXPECT_EQ(failure, expected) << address;
        ASSERT_EQ(interface != nullptr, expected.empty()) << address;
        if (interface) {
            EXPECT_EQ(store::statusOf(address.substr(7)).st_mode, S_IFSOCK | 0600U) << address;
        }
    }
    EXPECT_EQ(store::contentOf(folder / "file"), "text");
    EXPECT_EQ(store::namesIn(folder.path()), (std::set<std::string>{"file", "other"}));
}

}  // namespace
