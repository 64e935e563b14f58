#include "simulator/PrintingNotifyCenter.h"

#include "simulator/Output.h"

namespace simulator {

void PrintingNotifyCenter::post(std::string_view name) {
    center_.post(name);
    print("posted", name);
}

}  // namespace simulator
