#include "benchmarks/Process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include "store/files/Descriptor.h"

namespace bench {

namespace {

std::string readAll(int descriptor) {
    std::string text;
    std::array<char, 4096> bytes{};
    for (;;) {
        const ssize_t count = read(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return text;
        text.append(bytes.data(), static_cast<std::size_t>(count));
    }
}

pid_t start(const std::vector<std::string>& command, int output) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t child = -1;
    const int error = posix_spawnp(&child, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::runtime_error(command.front() + " cannot be run: " + std::strerror(error));
    return child;
}

}  // namespace

std::string run(const std::vector<std::string>& command) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error(std::strerror(errno));
    const store::Descriptor reading(ends[0]);
    store::Descriptor writing(ends[1]);
    const pid_t child = start(command, writing.number());
    writing.close();
    std::string output = readAll(reading.number());
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::string line;
        for (const std::string& argument : command) line += argument + ' ';
        throw std::runtime_error(line + (WIFEXITED(status) ? "failed" : "was killed"));
    }
    return output;
}

RunningProgram::RunningProgram(const std::vector<std::string>& command) : process_(start(command, STDOUT_FILENO)) {}

RunningProgram::~RunningProgram() {
    kill(process_, SIGTERM);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
}

double RunningProgram::peakMemory() const {
    std::ifstream status("/proc/" + std::to_string(process_) + "/status");
    for (std::string word; status >> word;) {
        double kilobytes = 0;
        if (word == "VmHWM:" && status >> kilobytes) return kilobytes * 1024;
    }
    throw std::runtime_error("a program has ended before its time");
}

std::filesystem::path programFolder() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

}  // namespace bench
