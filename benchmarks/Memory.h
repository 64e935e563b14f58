#pragma once

namespace bench {

// Bytes of this process in memory: now, and at most so far.
double residentMemory();
double peakMemory();

}  // namespace bench
