#pragma once

#include <string_view>

namespace simulator {

// Prints what the device would do, as one line on standard output ("posted <name>"), and flushes.
void print(std::string_view what, std::string_view of);

}  // namespace simulator
