#include "monkey/Bus.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace monkey {

Bus::Bus(const std::filesystem::path& folder) : configuration_(folder / "bus.conf"), socket_(folder / "bus") {
    const std::string address = "unix:path=" + socket_.string();
    std::ofstream(configuration_)
        << "<busconfig><type>system</type><listen>" << address << "</listen>"
        << "<policy context='default'><allow user='*'/><allow own='*'/>"
        << "<allow send_type='signal'/><allow send_destination='*'/><allow receive_sender='*'/>"
        << "</policy></busconfig>";
    setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), 1);
}

Bus::~Bus() {
    kill();
}

void Bus::start() {
    if (isRunning()) return;
    std::filesystem::remove(socket_);
    int ready[2];
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0 || pipe2(ready, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    const std::string option = "--config-file=" + configuration_.string();
    const std::string report = "--print-address=" + std::to_string(STDOUT_FILENO);
    process_ = vfork();
    if (process_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        dup2(ready[1], STDOUT_FILENO);
        dup2(nowhere, STDERR_FILENO);
        execlp("dbus-daemon", "dbus-daemon", "--nofork", option.c_str(), report.c_str(), nullptr);
        _exit(127);
    }
    close(ready[1]);
    close(nowhere);
    char first = 0;
    const bool isReady = read(ready[0], &first, 1) == 1;
    close(ready[0]);
    if (!isReady) throw std::runtime_error("dbus-daemon does not start");
}

void Bus::kill() {
    if (!isRunning()) return;
    ::kill(process_, SIGKILL);
    waitpid(std::exchange(process_, -1), nullptr, 0);
}

}  // namespace monkey
