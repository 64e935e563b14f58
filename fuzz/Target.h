#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "store/Values.h"

// What is fuzzed: one function for each kind of input that comes from outside. In the fuzz build it is run on whatever
// a fuzzer thinks of, in every other build on the files of its corpus.
namespace fuzz {

// Whether the input is one of its kind. Every source file named after a target defines it for that target.
bool accepts(std::string_view bytes);

// What must hold whatever the input is. Ends the process, which is how a fuzzer learns of it.
inline void demand(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

// What was read can be written, as it stands and built anew, and says the same when it is read again.
inline void demandRoundTrip(const store::Dictionary& dictionary) {
    const std::string values = canonical(dictionary);
    for (const std::string& text : {store::written(dictionary), values}) {
        const store::ReadResult again = store::readText(text);
        const auto* found = std::get_if<store::Dictionary>(&again);
        demand(found, "what was written cannot be read");
        demand(canonical(*found) == values, "what was written says something else");
    }
}

}  // namespace fuzz
