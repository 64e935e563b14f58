#include "monkey/Journal.h"

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <functional>

// The sanitizers', where the program is built with one.
extern "C" [[gnu::weak]] void __sanitizer_set_death_callback(void (*callback)());

namespace monkey::Journal {

namespace {

constexpr std::size_t remembered = 20;
constexpr unsigned patience = 120;  // seconds for one event

std::uint64_t seed = 0;
std::deque<std::pair<long, std::string>> events;
std::uint64_t noted = 0;

void print() {
    std::fprintf(stderr, "monkey: seed %llu, event %ld. The last events:\n", static_cast<unsigned long long>(seed),
                 events.empty() ? 0 : events.back().first);
    for (const auto& [number, what] : events) std::fprintf(stderr, "  %ld %s\n", number, what.c_str());
    std::fflush(stderr);
}

void onSignal(int signal) {
    std::fprintf(stderr, "monkey: %s\n", signal == SIGALRM ? "the event does not come to an end" : "killed");
    print();
    std::signal(signal, SIG_DFL);
    raise(signal);
}

}  // namespace

void begin(std::uint64_t chosen) {
    seed = chosen;
    const bool isSanitized = __sanitizer_set_death_callback != nullptr;
    if (isSanitized) __sanitizer_set_death_callback(print);
    for (const int signal : {SIGABRT, SIGALRM}) std::signal(signal, onSignal);
    if (!isSanitized) std::signal(SIGSEGV, onSignal);
}

void event(long number) {
    alarm(patience);
    events.emplace_back(number, "");
    if (events.size() > remembered) events.pop_front();
}

void note(const std::string& what) {
    std::string& line = events.back().second;
    line += line.empty() ? what : ", " + what;
    noted = std::hash<std::string>()(std::to_string(noted) + what);
}

std::uint64_t digest() {
    return noted;
}

void fail(const std::string& finding) {
    std::fprintf(stderr, "monkey: %s\n", finding.c_str());
    print();
    std::_Exit(EXIT_FAILURE);
}

}  // namespace monkey::Journal
