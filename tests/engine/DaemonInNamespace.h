#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "store/Files.h"

namespace testing_support {

// The real daemon, filtering a network of its own: network, processes and /etc are the namespace's, all other files the
// machine's, so a Unix socket by its path leads from one to the other. Nothing of it reaches the machine, and all of it
// ends with the object or with the test's process. Works as root, and for a user where the kernel allows user
// namespaces. One thread.
//
//     if (const std::string obstacle = DaemonInNamespace::obstacle(); !obstacle.empty()) GTEST_SKIP() << obstacle;
//     const store::TemporaryDirectory rules;
//     DaemonInNamespace daemon({.rules = rules.path(), .interfaceAddress = "unix:///tmp/.../socket"});
//     ASSERT_EQ(daemon.failure(), "");
//     ASSERT_TRUE(daemon.listen(8080));
//     EXPECT_EQ(daemon.run(DaemonInNamespace::connecting("/usr/bin/python3", "good.example", 8080)).status, 0);
//
// Every host name leads to 192.0.2.1. All of 192.0.2.0/24, and 2001:db8::1, are a second namespace's, to which a cable
// leads and where listen() listens. The lookup of a name is a connection too: UDP, port 53.
class DaemonInNamespace {
public:
    struct Setup {
        std::filesystem::path rules;          // the folder with the daemon's rules, absolute
        std::string interfaceAddress;         // where it looks for its interface; nobody need listen there
        std::string defaultAction = "allow";  // for a connection that no rule matches
    };

    // Why the daemon cannot run on this machine, for GTEST_SKIP(). Empty when it can.
    static std::string obstacle();

    // Returns when the daemon filters, which takes about a second.
    explicit DaemonInNamespace(const Setup& setup);
    ~DaemonInNamespace();
    DaemonInNamespace(const DaemonInNamespace&) = delete;
    DaemonInNamespace& operator=(const DaemonInNamespace&) = delete;

    // What went wrong, with the daemon's own log. Empty while it filters.
    const std::string& failure() const { return failure_; }
    std::string log() const;

    // Ends the daemon (SIGTERM, or the number given) and waits until it is gone; starts it again.
    void stop(int signal = 15);
    void start();

    // Runs a program in the namespace and waits for its end. The status is 128 and the signal's number after a signal.
    struct Outcome {
        int status;
        std::string output;  // and errors
    };
    Outcome run(const std::vector<std::string>& arguments) const;

    // Tries until it is so, for half a minute at most.
    static bool waitFor(const std::function<bool()>& isSo);

    // Accepts TCP connections on a port, and closes them, until the object is destroyed. False when it cannot.
    bool listen(std::uint16_t port);

    // A Python interpreter, or a copy of one, that connects and exits with 0 when it has been let through.
    static std::vector<std::string> connecting(const std::string& python, const std::string& host, std::uint16_t port);

private:
    std::vector<std::string> inside(const std::vector<std::string>& arguments) const;

    store::TemporaryDirectory folder_;
    std::string failure_;
    std::filesystem::path rules_;
    pid_t namespace_ = -1;  // unshare's process, with which the namespace ends
    std::string init_;      // the namespace's first process, as the machine numbers it
    std::vector<pid_t> listening_;
};

}  // namespace testing_support
