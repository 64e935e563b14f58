#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

namespace testing_support {

struct Outcome {
    int status;
    std::string output;  // and errors
};

// Runs a program by the shell and waits for its end.
inline Outcome runProgram(const std::string& program, const std::string& arguments) {
    const std::string command = program + ' ' + arguments + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    std::array<char, 256> part{};
    while (pipe && std::fgets(part.data(), part.size(), pipe)) output += part.data();
    const int status = pipe ? pclose(pipe) : -1;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

}  // namespace testing_support
