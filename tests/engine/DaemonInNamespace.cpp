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

// What makes the namespace, as its first process, which waits for those that nobody else does. $1: the folder with the
// daemon's configuration.
constexpr const char* makesNamespace = R"sh(
set -eu
mkdir "$1/machine-etc" "$1/bin"
mount --bind /etc "$1/machine-etc"
mount -t tmpfs -o mode=755 tmpfs /etc
for entry in "$1"/machine-etc/*; do
    case ${entry##*/} in resolv.conf|opensnitchd) ;; *) ln -s "$entry" /etc ;; esac
done
mkdir /etc/opensnitchd
cp "$1/default-config.json" /etc/opensnitchd
printf 'nameserver 127.0.0.1\noptions timeout:1 attempts:1\n' >/etc/resolv.conf
ip link set lo up
ip address add 192.0.2.1/24 dev lo
ip address add 2001:db8::1/128 dev lo 2>/dev/null || true
ln -s "$(command -v iptables-legacy)" "$1/bin/iptables"
ln -s "$(command -v ip6tables-legacy)" "$1/bin/ip6tables"
dnsmasq --no-daemon --conf-file=/dev/null --no-resolv --no-hosts --pid-file= --listen-address=127.0.0.1 \
    --bind-interfaces '--address=/#/192.0.2.1' >"$1/names" 2>&1 &
until ss -lun | grep -q 127.0.0.1:53; do
    kill -0 $! || { cat "$1/names"; exit 1; }
    sleep 0.02
done
echo ready
sleep infinity &
wait
)sh";

// $1: the folder; $2: the daemon; $3: its rules. Ends when the daemon filters, or has ended.
constexpr const char* startsDaemon = R"sh(
PATH=$1/bin:$PATH XTABLES_LOCKFILE=$1/xtables.lock
export PATH XTABLES_LOCKFILE
rm -f "$1/log"
"$2" -rules-path "$3" -log-file "$1/log" >"$1/output" 2>&1 &
echo $! >"$1/daemon"
while kill -0 $!; do
    grep -q 'Running on netfilter queue' "$1/log" && iptables -t mangle -S OUTPUT | grep -q NFQUEUE && exit
    sleep 0.05
done 2>/dev/null
exit 1
)sh";

// $1: the folder; $2: the signal. Ends when the daemon has ended.
constexpr const char* stopsDaemon = R"sh(
kill -"$2" "$(cat "$1/daemon")" || exit 0
while kill -0 "$(cat "$1/daemon")"; do sleep 0.02; done 2>/dev/null
exit 0
)sh";

constexpr const char* listens = R"py(
import socket, sys
server = socket.create_server(('', int(sys.argv[1])), backlog=64)
print('ready', flush=True)
while True:
    server.accept()[0].close()
)py";

constexpr const char* connects = R"py(
import socket, sys
try:
    socket.create_connection((sys.argv[1], int(sys.argv[2])), timeout=3).close()
except OSError as problem:
    sys.exit(str(problem))
)py";

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

// Paths of tests have nothing in them that JSON would want escaped.
void configure(const std::filesystem::path& file, const DaemonInNamespace::Setup& setup) {
    std::ofstream(file) << R"({"Server": {"Address": ")" << setup.interfaceAddress
                        << R"(", "LogFile": ""}, "DefaultAction": ")" << setup.defaultAction
                        << R"(", "DefaultDuration": "once", "InterceptUnknown": false, "ProcMonitorMethod": "proc",)"
                        << R"( "LogLevel": 1, "Firewall": "iptables", "Stats": {"MaxEvents": 150, "MaxStats": 25}})";
}

}  // namespace

std::string DaemonInNamespace::obstacle() {
    if (!std::filesystem::exists(daemonProgram())) return "there is no opensnitchd here";
    const Child child(unsharing({"sh", "-c",
                                 "for tool in ip iptables-legacy ip6tables-legacy dnsmasq python3; do "
                                 "command -v $tool >/dev/null || { echo there is no $tool here; exit 1; }; done; "
                                 "export XTABLES_LOCKFILE=/dev/null; "
                                 "iptables-legacy -t mangle -A OUTPUT -m conntrack --ctstate NEW -j NFQUEUE"}));
    const std::string problem = child.read();
    return child.wait() == 0 ? "" : "this system has no network of one's own with queues: " + problem;
}

DaemonInNamespace::DaemonInNamespace(const Setup& setup) : rules_(setup.rules) {
    configure(folder_ / "default-config.json", setup);
    const Child child(unsharing({"sh", "-c", makesNamespace, "sh", folder_.path()}));
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
    const Outcome outcome = run({"sh", "-c", startsDaemon, "sh", folder_.path(), daemonProgram(), rules_});
    failure_ = outcome.status == 0 ? "" : "the daemon does not run: " + store::contentOf(folder_ / "output") + log();
}

void DaemonInNamespace::stop(int signal) {
    run({"sh", "-c", stopsDaemon, "sh", folder_.path(), std::to_string(signal)});
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
    const Child child(inside({"python3", "-c", listens, std::to_string(port)}));
    if (child.process > 0) listening_.push_back(child.process);
    return child.read() == "ready\n";
}

std::vector<std::string> DaemonInNamespace::connecting(const std::string& python, const std::string& host,
                                                       std::uint16_t port) {
    return {python, "-c", connects, host, std::to_string(port)};
}

std::vector<std::string> DaemonInNamespace::inside(const std::vector<std::string>& arguments) const {
    std::vector<std::string> words{"nsenter", "--target", init_, "--net", "--mount", "--pid"};
    if (!isRoot()) words.insert(words.end(), {"--user", "--preserve-credentials"});
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

}  // namespace testing_support
