#pragma once

#include <iosfwd>
#include <vector>

#include "benchmarks/Row.h"

namespace bench {

// The rows for a program to read: seconds and bytes as numbers.
void writeJson(std::ostream& output, const std::vector<Row>& rows);

}  // namespace bench
