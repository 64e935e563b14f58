#include "benchmarks/workers/Worker.h"

#include <exception>
#include <iostream>
#include <sstream>

#include "benchmarks/Process.h"
#include "benchmarks/workers/Workers.h"

namespace bench {

Figures figuresOf(const std::string& output) {
    Figures figures;
    std::istringstream lines(output);
    double figure = 0;
    for (std::string name; lines >> name >> figure;) figures[name] = figure;
    return figures;
}

Figures runWorker(const std::vector<std::string>& nameAndArguments) {
    std::vector<std::string> command{programFolder() / "vexmor-bench", "--worker"};
    command.insert(command.end(), nameAndArguments.begin(), nameAndArguments.end());
    return figuresOf(run(command));
}

int work(const std::vector<std::string>& nameAndArguments) {
    for (const Worker& worker : workers) {
        if (nameAndArguments.empty() || worker.name != nameAndArguments.front()) continue;
        try {
            for (const auto& [name, figure] : worker.measure({nameAndArguments.begin() + 1, nameAndArguments.end()}))
                std::cout << name << ' ' << figure << '\n';
            return 0;
        } catch (const std::exception& problem) {
            std::cerr << worker.name << ": " << problem.what() << '\n';
            return 1;
        }
    }
    return 2;
}

}  // namespace bench
