#include "engine/DaemonInNamespace.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>
#include <utility>

namespace testing_support {

namespace {

std::string script(const std::string& name) {
    return VEXMOR_NETWORK_SCRIPTS + ('/' + name);
}

bool isRoot() {
    return geteuid() == 0;
}

// The one that scripts/daemon.sh unpacks, or else the machine's own.
std::filesystem::path daemonProgram() {
    return std::filesystem::exists(VEXMOR_DAEMON) ? VEXMOR_DAEMON : "/usr/bin/opensnitchd";
}

// A process that ends with the test's, with its output and errors in a pipe.
struct Child {
    pid_t process = -1;
    int output = -1;

    explicit Child(const std::vector<std::string>& arguments) {
        std::vector<char*> words;
        words.reserve(arguments.size() + 1);
        for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
        words.push_back(nullptr);
        const char* known = getenv("PATH");
        const std::string path = std::string(known ? known : "/usr/bin:/bin") + ":/usr/sbin:/sbin";
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) return;
        process = fork();
        if (process == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            setenv("PATH", path.c_str(), 1);
            dup2(ends[1], STDOUT_FILENO);
            dup2(ends[1], STDERR_FILENO);
            execvp(words[0], words.data());
            _exit(127);
        }
        close(ends[1]);
        output = ends[0];
    }

    // What comes until the end, or until the line "ready".
    std::string read() const {
        std::string text;
        char part[512];
        while (!text.ends_with("ready\n")) {
            const ssize_t count = ::read(output, part, sizeof part);
            if (count <= 0) break;
            text.append(part, static_cast<std::size_t>(count));
        }
        return text;
    }

    int wait() const {
        close(output);
        int status = 0;
        waitpid(process, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
};

std::vector<std::string> unsharing(const std::vector<std::string>& arguments) {
    std::vector<std::string> words{"unshare", "--net", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc"};
    if (!isRoot()) words.emplace_back("--map-root-user");
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

}  // namespace

std::string DaemonInNamespace::obstacle() {
    if (!std::filesystem::exists(daemonProgram())) return "there is no opensnitchd here";
    const Child child(unsharing({script("try_network.sh")}));
    const std::string problem = child.read();
    return child.wait() == 0 ? "" : "this system has no network of one's own with queues: " + problem;
}

DaemonInNamespace::DaemonInNamespace(const Setup& setup) : rules_(setup.rules) {
    const Child child(
        unsharing({script("make_network.sh"), folder_.path(), setup.interfaceAddress, setup.defaultAction}));
    namespace_ = child.process;
    const std::string said = child.read();
    const std::string process = std::to_string(namespace_);
    std::ifstream("/proc/" + process + "/task/" + process + "/children") >> init_;
    if (said.ends_with("ready\n") && !init_.empty())
        start();
    else
        failure_ = "there is no namespace: " + said;
}

DaemonInNamespace::~DaemonInNamespace() {
    for (const pid_t process : listening_) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
    kill(namespace_, SIGKILL);
    waitpid(namespace_, nullptr, 0);
}

std::string DaemonInNamespace::log() const {
    return store::contentOf(folder_ / "log");
}

void DaemonInNamespace::start() {
    const Outcome outcome = run({script("start_daemon.sh"), folder_.path(), daemonProgram(), rules_});
    failure_ = outcome.status == 0 ? "" : "the daemon does not run: " + store::contentOf(folder_ / "output") + log();
}

void DaemonInNamespace::stop(int signal) {
    run({script("stop_daemon.sh"), folder_.path(), std::to_string(signal)});
}

DaemonInNamespace::Outcome DaemonInNamespace::run(const std::vector<std::string>& arguments) const {
    const Child child(inside(arguments));
    const std::string output = child.read();
    return {child.wait(), output};
}

bool DaemonInNamespace::waitFor(const std::function<bool()>& isSo) {
    using Clock = std::chrono::steady_clock;
    for (const auto end = Clock::now() + std::chrono::seconds(30); Clock::now() < end;) {
        if (isSo()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

bool DaemonInNamespace::listen(std::uint16_t port) {
    const Child child(
        inside({script("run_in_world.sh"), folder_.path(), "python3", script("listen.py"), std::to_string(port)}));
    if (child.process > 0) listening_.push_back(child.process);
    return child.read() == "ready\n";
}

std::vector<std::string> DaemonInNamespace::connecting(const std::string& python, const std::string& host,
                                                       std::uint16_t port) {
    return {python, script("connect.py"), host, std::to_string(port)};
}

std::vector<std::string> DaemonInNamespace::inside(const std::vector<std::string>& arguments) const {
    std::vector<std::string> words{"nsenter", "--target", init_, "--root", "--net", "--mount", "--pid"};
    if (!isRoot()) words.insert(words.end(), {"--user", "--preserve-credentials"});
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

}  // namespace testing_support
