#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace bench {

// Runs a program, found as a shell finds it, and waits for its end. Returns what it wrote on standard output. Throws
// std::runtime_error when it cannot be run or does not end with status 0.
std::string run(const std::vector<std::string>& command);

// A program that runs until the object is destroyed, which ends it (SIGTERM) and waits. Throws as run() does.
class RunningProgram {
public:
    explicit RunningProgram(const std::vector<std::string>& command);
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    // Bytes of it in memory, at most so far.
    double peakMemory() const;

private:
    pid_t process_;
};

// Where this program and those that were built with it lie.
std::filesystem::path programFolder();

}  // namespace bench
