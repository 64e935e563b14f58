// The log that the engine writes, beside what others do to the file meanwhile.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <thread>

#include "engine/TextOfLog.h"
#include "engine/log/EngineLog.h"
#include "store/Files.h"
#include "store/files/FileLease.h"

namespace {

using engine::EngineLog;
using engine::LogLine;
using testing_support::textOfLog;
using namespace std::string_literals;
namespace fs = std::filesystem;

// Friday, 12 April 2024, at midnight.
constexpr std::time_t friday = 1712880000;
constexpr int day = 86400;

LogLine line(std::time_t seconds, const std::string& host = "imap.example.com") {
    return {std::chrono::system_clock::from_time_t(friday + seconds), "Harbour Mail", host, 993, true};
}

class Log : public testing::Test {
protected:
    Log() {
        setenv("TZ", "UTC", 1);
        tzset();
    }

    store::TemporaryDirectory folder_;
    fs::path file_ = folder_ / "log";
};

TEST_F(Log, HasALineForEachConnectionUnderItsDay) {
    const mode_t previous = umask(077);
    EngineLog log(file_);
    EXPECT_FALSE(log.append({}));
    EXPECT_FALSE(fs::exists(file_));
    EXPECT_FALSE(log.append({line(28876), {line(28924).time, "Quarto\n\x1B News", "192.0.2.77", 80, false}}));
    EXPECT_FALSE(log.append({{line(28925).time, "東京 🗼", "2001:db8::7", 443, true}, line(day + 1, "a.example")}));
    EXPECT_FALSE(log.append({{line(day + 2).time, "Atlas", "2001:db8::7", 0, false}}));
    EXPECT_FALSE(EngineLog(file_).append({line(day + 3)}));  // an engine that has been started again
    umask(previous);
    EXPECT_EQ(textOfLog(file_),
              "Friday, 12 April 2024\n"
              "08:01:16 Harbour Mail → imap.example.com:993\n"
              "08:02:04 Quarto News → 192.0.2.77:80 denied\n"
              "08:02:05 東京 🗼 → [2001:db8::7]:443\n"
              "Saturday, 13 April 2024\n"
              "00:00:01 Harbour Mail → a.example:993\n"
              "00:00:02 Atlas → 2001:db8::7 denied\n"
              "Saturday, 13 April 2024\n"
              "00:00:03 Harbour Mail → imap.example.com:993\n");
    EXPECT_EQ(store::statusOf(file_).st_mode, S_IFREG | 0644U);
}

TEST_F(Log, BeginsAnewWhenItWasTakenAway) {
    const std::string fresh = "Friday, 12 April 2024\n00:00:02 Harbour Mail → imap.example.com:993\n";
    const struct {
        const char* what;
        std::function<void()> happens;
    } cases[] = {
        {"deleted", [&] { fs::remove(file_); }},
        {"truncated", [&] { fs::resize_file(file_, 0); }},
        {"cut within the mark", [&] { fs::resize_file(file_, 1); }},
    };
    for (const auto& [what, happens] : cases) {
        fs::remove(file_);
        EngineLog log(file_);
        ASSERT_FALSE(log.append({line(1)})) << what;
        happens();
        EXPECT_FALSE(log.append({line(2)})) << what;
        EXPECT_EQ(textOfLog(file_), fresh) << what;
    }
    fs::resize_file(file_, 2 + 2 * 21 + 1);
    EXPECT_FALSE(EngineLog(file_).append({line(2)}));
    EXPECT_EQ(textOfLog(file_), "Friday, 12 April 2024\n" + fresh) << "cut within a unit, at the end of a line";
}

TEST_F(Log, IsNothingButARegularFileWithOneName) {
    const fs::path other = folder_ / "other";
    const struct {
        const char* what;
        std::function<void()> made;
    } cases[] = {
        {"a link", [&] { fs::create_symlink(other, file_); }},
        {"a link to nothing", [&] { fs::create_symlink(folder_ / "missing", file_); }},
        {"a hard link", [&] { fs::create_hard_link(other, file_); }},
        {"a pipe", [&] { ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0); }},
        {"a folder", [&] { fs::create_directory(file_); }},
    };
    for (const auto& [what, made] : cases) {
        store::put(other, std::string(4000, 'x'));
        made();
        EngineLog log(file_, 4000);  // so that it would be replaced, too
        EXPECT_TRUE(log.append({line(1)})) << what;
        EXPECT_EQ(store::contentOf(other), std::string(4000, 'x')) << what;
        EXPECT_FALSE(fs::exists(folder_ / "missing")) << what;
        fs::remove(file_);
        EXPECT_FALSE(log.append({line(1)})) << what;
        fs::remove(file_);
        EXPECT_EQ(store::namesIn(folder_.path()), std::set<std::string>{"other"}) << what;
    }
    EXPECT_TRUE(EngineLog(folder_ / "missing/log").append({line(1)}));
}

TEST_F(Log, DropsItsOlderHalfAtTheLimit) {
    constexpr std::size_t largest = 4000;
    EngineLog log(file_, largest);
    int replaced = 0;
    for (int i = 0; i < 400; ++i) {
        const ino_t before = i ? store::statusOf(file_).st_ino : 0;
        // A surrogate pair of its own, lines of many lengths, 25 lines a day.
        ASSERT_FALSE(log.append({line(i / 25 * day + i % 25, std::string(i % 17, 'a') + "🗼.example")})) << i;
        const std::string text = textOfLog(file_);
        const std::size_t size = fs::file_size(file_);
        ASSERT_LE(size, largest) << i;
        if (i && store::statusOf(file_).st_ino != before) {
            ++replaced;
            ASSERT_GT(size, largest / 4) << i;
        }
        const auto lines = static_cast<int>(std::ranges::count(text, '\n'));
        ASSERT_TRUE(text.ends_with(".example:993\n")) << text;
        // Each line that is left is whole, and under its day: what would be written of the same connections alone.
        const auto headings = [&] {
            int count = 0;
            for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1) count += text[at] > '9';
            return count;
        }();
        std::vector<LogLine> left;
        for (int n = i - (lines - headings) + 1; n <= i; ++n)
            left.push_back(line(n / 25 * day + n % 25, std::string(n % 17, 'a') + "🗼.example"));
        ASSERT_FALSE(EngineLog(folder_ / "expected").append(left));
        ASSERT_EQ(text, textOfLog(folder_ / "expected")) << i;
        fs::remove(folder_ / "expected");
    }
    EXPECT_GT(replaced, 5);
    EXPECT_EQ(store::namesIn(folder_.path()), std::set<std::string>{"log"});
    EXPECT_EQ(store::statusOf(file_).st_mode, S_IFREG | 0644U);

    const std::string before = textOfLog(file_);
    EXPECT_EQ(log.append(std::vector<LogLine>(60, line(1))), std::errc::file_too_large);
    EXPECT_EQ(textOfLog(file_), before);
    store::put(file_, std::string(3 * largest, 'x'));  // somebody else's, larger than a log ever is, and no lines
    EXPECT_FALSE(log.append({line(1)}));
    EXPECT_EQ(textOfLog(file_), "Friday, 12 April 2024\n00:00:01 Harbour Mail → imap.example.com:993\n");
}

TEST_F(Log, WaitsForAReaderThatHasLeasedIt) {
    EngineLog log(file_);
    ASSERT_FALSE(log.append({line(1)}));
    store::Descriptor file(open(file_.c_str(), O_RDONLY | O_CLOEXEC));
    auto leased = store::leaseFile(file, fs::file_size(file_));
    if (!leased) GTEST_SKIP() << "this file system has no leases";
    std::thread reader([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        leased.reset();
    });
    EXPECT_FALSE(log.append({line(2)}));
    reader.join();
    EXPECT_TRUE(textOfLog(file_).ends_with("00:00:02 Harbour Mail → imap.example.com:993\n"));
}

}  // namespace
