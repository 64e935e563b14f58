#include "simulator/Output.h"

#include <iostream>

namespace simulator {

void print(std::string_view what, std::string_view of) {
    std::cout << what << ' ' << of << std::endl;
}

}  // namespace simulator
