#pragma once

#include <cstdint>
#include <string>

// What has happened lately, so that whatever ends the run (a finding, a sanitizer, an assertion, a crash, an event
// that does not come to an end) comes with the seed and the event that it takes to see it again.
namespace monkey::Journal {

void begin(std::uint64_t seed);
// The next event, about to happen.
void event(long number);
// What it turned out to be.
void note(const std::string& what);
// Of all that was noted: runs that have it in common were the same.
std::uint64_t digest();
[[noreturn]] void fail(const std::string& finding);

}  // namespace monkey::Journal
