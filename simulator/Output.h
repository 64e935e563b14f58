#pragma once

#include <string_view>

namespace simulator {

// Tells on standard output what the device would do, as one line that is out when this returns: "posted <name>".
void print(std::string_view what, std::string_view of);

}  // namespace simulator
