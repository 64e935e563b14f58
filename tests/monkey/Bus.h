#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace monkey {

// A system bus of the test's own, which comes and goes.
class Bus {
public:
    // Its socket lies in the folder.
    explicit Bus(const std::filesystem::path& folder) : socket_(folder / "bus") {
        setenv("DBUS_SYSTEM_BUS_ADDRESS", address().c_str(), 1);
    }
    ~Bus() { kill(); }
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    bool isRunning() const { return process_ > 0; }

    void start() {
        if (isRunning()) return;
        std::filesystem::remove(socket_);
        int ready[2];
        if (pipe2(ready, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
        const std::string option = "--address=" + address();
        process_ = fork();
        if (process_ == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            dup2(ready[1], STDOUT_FILENO);
            close(STDERR_FILENO);  // it opens another
            execlp("dbus-daemon", "dbus-daemon", "--session", "--nofork", option.c_str(), "--print-address=1", nullptr);
            _exit(127);
        }
        close(ready[1]);
        char first = 0;
        const bool isReady = read(ready[0], &first, 1) == 1;
        close(ready[0]);
        if (!isReady) throw std::runtime_error("dbus-daemon does not start");
    }

    void kill() {
        if (!isRunning()) return;
        ::kill(process_, SIGKILL);
        waitpid(std::exchange(process_, -1), nullptr, 0);
    }

private:
    std::string address() const { return "unix:path=" + socket_.string(); }

    std::filesystem::path socket_;
    pid_t process_ = -1;
};

}  // namespace monkey
