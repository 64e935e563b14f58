#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace engine {

// A connection, as people read of it.
struct LogLine {
    std::chrono::system_clock::time_point time;
    std::string app;         // the name that people know it by
    std::string host;        // a name or an address
    std::uint16_t port = 0;  // 0: unknown
    bool isAllowed = false;
};

// The log that the app shows and deletes; docs/engine-contract.md has its form. Times are local.
//
// The folder belongs to a group whose members have fewer rights than the engine: they may delete the log and put
// anything in its place at any time. So it is opened anew each time, never through a link, and only where it is a
// regular file with one name; everything else is left as it is and reported as an error. Never blocks for longer than a
// second, which is what somebody may need who has leased the file (store/files/FileLease.h).
//
// One thread at a time, and one object for a log.
class EngineLog {
public:
    static constexpr std::size_t largestSize = std::size_t{50} << 20;

    // `largest` in bytes: a log that would grow beyond is replaced, in one step, by its newer half.
    explicit EngineLog(std::filesystem::path file, std::size_t largest = largestSize);

    // Adds the lines by one write. On an error nothing is added, and they may be tried again; file_too_large: they fill
    // half a log.
    std::error_code append(const std::vector<LogLine>& lines);

private:
    std::filesystem::path file_;
    std::size_t largest_;
    std::u16string day_;  // the heading that was written last
};

}  // namespace engine
