#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace bench {

// What a piece of work was measured to take, by the name of what was measured: seconds or bytes.
using Figures = std::map<std::string, double>;
using Work = std::function<Figures()>;

inline constexpr int fewestRounds = 5;

double median(std::vector<double> values);
double mean(const std::vector<double>& values);

// Does the works in turn, round after round, so that whatever else the machine is doing strikes all of them alike, and
// settles the machine before each. The median of every figure.
Figures medianOfRounds(const std::vector<Work>& works, int rounds = fewestRounds);

double secondsOf(const std::function<void()>& work);

}  // namespace bench
