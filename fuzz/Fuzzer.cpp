// The way into a target for libFuzzer. Tells what came of an input where the environment asks for it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "fuzz/Target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool isTold = std::getenv("VEXMOR_FUZZ_TELL") != nullptr;
    const bool isAccepted = fuzz::accepts({reinterpret_cast<const char*>(data), size});
    if (isTold) std::puts(isAccepted ? "accepts" : "rejects");
    return 0;
}
