#pragma once

#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <functional>
#include <iostream>
#include <string>

// The sanitizers', where the program is built with one.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is theirs
extern "C" [[gnu::weak]] void __sanitizer_set_death_callback(void (*callback)());

// What has happened lately, so that whatever ends the run (a finding, a sanitizer, an assertion, a crash, an event
// that does not come to an end) comes with the seed and the event that it takes to see it again.
namespace monkey::Journal {

inline std::uint64_t seed = 0;
inline std::deque<std::pair<long, std::string>> events{{0, ""}};
// Of all that was noted: runs that have it in common were the same.
inline std::uint64_t digest = 0;

inline void print() {
    std::cerr << "monkey: seed " << seed << ", event " << events.back().first << ". The last events:\n";
    for (const auto& [number, what] : events) std::cerr << "  " << number << " " << what << "\n";
}

inline void onSignal(int signal) {
    std::cerr << "monkey: " << (signal == SIGALRM ? "the event does not come to an end" : "killed") << "\n";
    print();
    std::signal(signal, SIG_DFL);
    raise(signal);
}

inline void begin(std::uint64_t chosen) {
    seed = chosen;
    const bool isSanitized = __sanitizer_set_death_callback != nullptr;
    if (isSanitized) __sanitizer_set_death_callback(print);
    for (const int signal : {SIGABRT, SIGALRM}) std::signal(signal, onSignal);
    if (!isSanitized) std::signal(SIGSEGV, onSignal);
}

// The next event, about to happen.
inline void event(long number) {
    constexpr std::size_t remembered = 20;
    constexpr unsigned patience = 120;  // seconds for one event
    alarm(patience);
    events.emplace_back(number, "");
    if (events.size() > remembered) events.pop_front();
}

// What it turned out to be.
inline void note(const std::string& what) {
    std::string& line = events.back().second;
    line += line.empty() ? what : ", " + what;
    digest = std::hash<std::string>()(std::to_string(digest) + what);
}

[[noreturn]] inline void fail(const std::string& finding) {
    std::cerr << "monkey: " << finding << "\n";
    print();
    std::_Exit(EXIT_FAILURE);
}

}  // namespace monkey::Journal
