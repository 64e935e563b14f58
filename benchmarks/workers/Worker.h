#pragma once

#include <string>
#include <vector>

#include "benchmarks/Figures.h"

namespace bench {

// A piece of work that is measured in a process of its own: nothing that was done before can make it faster or slower,
// and its memory is its own.
struct Worker {
    const char* name;
    Figures (*measure)(const std::vector<std::string>& arguments);
};

// The figures that a process has written, a name and a number a line.
Figures figuresOf(const std::string& output);

// For the process that has others work.
Figures runWorker(const std::vector<std::string>& nameAndArguments);

// For the process that works: writes the figures. Returns the exit status.
int work(const std::vector<std::string>& nameAndArguments);

}  // namespace bench
