// The way into a target for libFuzzer.
#include <cstddef>
#include <cstdint>

#include "fuzz/Target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::accepts({reinterpret_cast<const char*>(data), size});
    return 0;
}
