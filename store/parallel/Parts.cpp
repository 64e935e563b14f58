#include "store/parallel/Parts.h"

#include <algorithm>
#include <barrier>
#include <exception>
#include <thread>
#include <vector>

#include "store/parallel/Threads.h"

namespace store {

namespace {

void doPart(const Phase& phase, std::size_t part, std::size_t parts) {
    constexpr std::size_t multiple = 64;
    const std::size_t size = (phase.count / parts + multiple) / multiple * multiple;
    const std::size_t begin = std::min(part * size, phase.count);
    const std::size_t end = std::min(begin + size, phase.count);
    if (begin < end) phase.work(begin, end);
}

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

void inPhases(std::size_t parts, std::initializer_list<Phase> phases) {
    std::barrier ends(static_cast<std::ptrdiff_t>(parts));
    const std::vector<std::jthread> others = startOthers(parts, [&ends, phases, parts](std::size_t part) {
        for (const Phase& phase : phases) {
            doPart(phase, part, parts);
            ends.arrive_and_wait();
        }
    });
    for (std::size_t missing = others.size() + 1; missing < parts; ++missing) ends.arrive_and_drop();
    for (const Phase& phase : phases) {
        doPart(phase, 0, parts);
        for (std::size_t missing = others.size() + 1; missing < parts; ++missing) doPart(phase, missing, parts);
        ends.arrive_and_wait();
    }
}

void inAll(std::size_t parts, const std::function<void(std::size_t)>& work) {
    const std::vector<std::jthread> others = startOthers(parts, work);
    work(0);
    for (std::size_t missing = others.size() + 1; missing < parts; ++missing) work(missing);
}

void inParts(std::size_t count, std::size_t worthwhile, const std::function<void(std::size_t, std::size_t)>& work) {
    inPhases(partsWorthwhile(count, worthwhile), {{count, work}});
}

}  // namespace store
