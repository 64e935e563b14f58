#include "benchmarks/Figures.h"

#include <algorithm>
#include <chrono>
#include <numeric>

#include "benchmarks/Machine.h"

namespace bench {

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double mean(const std::vector<double>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

Figures medianOfRounds(const std::vector<Work>& works, int rounds) {
    std::map<std::string, std::vector<double>> measured;
    for (int round = 0; round < rounds; ++round) {
        for (const Work& work : works) {
            settleMachine();
            for (const auto& [name, figure] : work()) measured[name].push_back(figure);
        }
    }
    Figures medians;
    for (const auto& [name, figures] : measured) medians[name] = median(figures);
    return medians;
}

double secondsOf(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

}  // namespace bench
