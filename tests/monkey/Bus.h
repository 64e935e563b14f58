#pragma once

#include <sys/types.h>

#include <filesystem>

namespace monkey {

// A system bus of the test's own, which comes and goes.
class Bus {
public:
    // Its socket and its configuration lie in the folder.
    explicit Bus(const std::filesystem::path& folder);
    ~Bus();
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    bool isRunning() const { return process_ > 0; }
    void start();
    void kill();

private:
    std::filesystem::path configuration_;
    std::filesystem::path socket_;
    pid_t process_ = -1;
};

}  // namespace monkey
