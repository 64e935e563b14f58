#include "store/Parts.h"

#include <algorithm>
#include <system_error>
#include <thread>
#include <vector>

namespace store {

void inParts(std::size_t count, std::size_t worthwhile, const std::function<void(std::size_t, std::size_t)>& work) {
    constexpr std::size_t multiple = 64;
    const std::size_t processors = std::max(1u, std::thread::hardware_concurrency());
    const std::size_t parts = std::clamp<std::size_t>(count / worthwhile, 1, processors);
    const std::size_t part = (count / parts + multiple) / multiple * multiple;
    std::vector<std::jthread> others;
    std::size_t begin = 0;
    try {
        for (; begin + part < count; begin += part) others.emplace_back(work, begin, begin + part);
    } catch (const std::system_error&) {
        // No more threads: what is left is done here.
    }
    work(begin, count);
}

}  // namespace store
