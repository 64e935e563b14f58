#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace bench {

// Runs a program, found as a shell finds it, and waits for its end. Returns what it wrote on standard output. Throws
// std::runtime_error when it cannot be run or does not end with status 0.
std::string run(const std::vector<std::string>& command);

// Where this program and those that were built with it lie.
std::filesystem::path programFolder();

}  // namespace bench
