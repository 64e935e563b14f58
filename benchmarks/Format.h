#pragma once

#include <cstddef>
#include <string>

#include "benchmarks/Row.h"

namespace bench {

// As a person reads it: "412 ms", "312 MB"; "2.6x", "13x faster"; "at most 3x", "12x faster".
std::string figureText(double figure, Unit unit);
std::string ratioText(const Row& row);
std::string goalText(const Goal& goal);
// "1,000,000".
std::string countText(std::size_t count);

}  // namespace bench
