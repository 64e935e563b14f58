#include "benchmarks/Memory.h"

#include <fstream>
#include <string>
#include <string_view>

namespace bench {

namespace {

double statusField(std::string_view name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double kilobytes = 0;
        if (word == name && status >> kilobytes) return kilobytes * 1024;
    }
    return 0;
}

}  // namespace

double residentMemory() {
    return statusField("VmRSS:");
}

double peakMemory() {
    return statusField("VmHWM:");
}

}  // namespace bench
