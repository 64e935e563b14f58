#include "store/parallel/Parts.h"

#include <algorithm>
#include <exception>
#include <thread>
#include <vector>

#include "store/parallel/Threads.h"

namespace store {

namespace {

// Starts threads for the parts from 1 on; fewer where the system has no more threads or memory. The caller does the
// parts that have none.
std::vector<std::jthread> startOthers(std::size_t parts, const std::function<void(std::size_t)>& work) {
    std::vector<std::jthread> others;
    if (isFuzzed) return others;
    try {
        others.reserve(parts);
        for (std::size_t part = 1; part < parts; ++part) others.push_back(startBeside([work, part] { work(part); }));
    } catch (const std::exception&) {
        return others;
    }
    return others;
}

}  // namespace

std::size_t partsWorthwhile(std::size_t count, std::size_t worthwhile) {
    const std::size_t processors = isFuzzed ? 3 : std::max(1u, std::thread::hardware_concurrency());
    return std::clamp<std::size_t>(count / partSize(worthwhile), 1, processors);
}

void inAll(std::size_t parts, const std::function<void(std::size_t)>& work) {
    const std::vector<std::jthread> others = startOthers(parts, work);
    work(0);
    for (std::size_t missing = others.size() + 1; missing < parts; ++missing) work(missing);
}

void inParts(std::size_t count, std::size_t worthwhile, const std::function<void(std::size_t, std::size_t)>& work) {
    constexpr std::size_t multiple = 64;
    const std::size_t parts = partsWorthwhile(count, worthwhile);
    const std::size_t size = (count / parts + multiple) / multiple * multiple;
    inAll(parts, [&](std::size_t part) {
        const std::size_t begin = std::min(part * size, count);
        const std::size_t end = std::min(begin + size, count);
        if (begin < end) work(begin, end);
    });
}

}  // namespace store
