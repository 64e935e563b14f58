#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "store/Values.h"
#include "store/plist/XmlScanner.h"

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

// How deep the elements of a value lie.
inline std::size_t depthOf(const store::Value& value) {
    using Event = store::XmlScanner::Event;
    const store::Slice slice = sliceOf(value);
    store::XmlScanner scanner(slice);
    store::XmlText ignored;
    std::size_t depth = 0, deepest = 0;
    do {
        const Event event = scanner.next();
        if (event == Event::open && !isContainer(scanner.tag())) scanner.text(ignored);
        if (event == Event::open && isContainer(scanner.tag())) deepest = std::max(deepest, ++depth);
        if (event == Event::close) --depth;
    } while (depth > 0);
    return deepest;
}

// The dictionary's values, every one taken apart and built anew, as text. What is too deep for that, which is done
// level by level, stays text.
inline std::string valuesOf(const store::Dictionary& dictionary) {
    constexpr std::size_t deepest = 100;
    store::Dictionary values;
    for (const auto& [key, value] : dictionary) values.set(key, depthOf(value) < deepest ? rebuilt(value) : value);
    return store::written(values);
}

// What was read can be written, as it stands and built anew, and says the same when it is read again.
inline void demandRoundTrip(const store::Dictionary& dictionary) {
    const std::string values = valuesOf(dictionary);
    for (const std::string& text : {store::written(dictionary), values}) {
        const store::ReadResult again = store::readText(text);
        const auto* found = std::get_if<store::Dictionary>(&again);
        demand(found, "what was written cannot be read");
        demand(valuesOf(*found) == values, "what was written says something else");
    }
}

}  // namespace fuzz
