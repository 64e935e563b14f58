#pragma once

#include <iosfwd>
#include <vector>

#include "benchmarks/Row.h"

namespace bench {

// A line for each row, in columns.
void printTable(std::ostream& output, const std::vector<Row>& rows);

}  // namespace bench
