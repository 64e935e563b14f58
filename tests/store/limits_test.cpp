// Files that were made to hurt: each is read, and written again if it is a list, in a process of its own, which must
// get by with a small multiple of the file's size.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <iomanip>
#include <iostream>
#include <stdexcept>
#include <string>

#include "Binary.h"
#include "Files.h"
#include "store/plist/PropertyListFile.h"
#include "store/rules/RuleFile.h"

namespace store {
namespace {

using namespace std::string_literals;

constexpr std::size_t megabyte = 1 << 20;
constexpr std::size_t usual = 10 * megabyte;
constexpr std::size_t levels = 1'000'000;

struct Outcome {
    bool isList = false;
    double seconds = 0;  // of the processor
    long kilobytes = 0;  // more than before
};

struct rusage usage() {
    struct rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage;
}

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

Outcome readAndWrite(const std::filesystem::path& from, const std::filesystem::path& to) {
    const struct rusage before = usage();
    const std::optional<Dictionary> dictionary = readRuleFile(from);
    const bool isList = dictionary && writeDictionary(to, *dictionary);
    const struct rusage after = usage();
    return {isList, secondsOf(after.ru_utime) - secondsOf(before.ru_utime), after.ru_maxrss - before.ru_maxrss};
}

// Memory that this process has had is no measure for what comes later: it never does anything itself.
template <class Result>
Result inAProcessOfItsOwn(const std::function<Result()>& work) {
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("no pipe");
    const pid_t child = fork();
    if (child == 0) {
        const Result result = work();
        _exit(write(ends[1], &result, sizeof result) == sizeof result ? 0 : 1);
    }
    close(ends[1]);
    Result result{};
    const bool isWhole = read(ends[0], &result, sizeof result) == sizeof result;
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(isWhole && WIFEXITED(status)) << "it did not survive";
    return result;
}

std::string repeated(std::string_view text, std::size_t size) {
    std::string all;
    for (all.reserve(size + text.size()); all.size() < size;) all += text;
    return all;
}

std::string times(std::string_view text, std::size_t count) {
    return repeated(text, count * text.size());
}

std::string value(std::string_view element) {
    return "<dict><key>a</key>" + std::string(element) + "</dict>";
}

std::string utf16(std::string_view ascii, std::string_view middle, std::string_view rest) {
    std::string bytes = "\xFF\xFE";
    const auto widen = [&](std::string_view text) {
        for (const char c : text) bytes += {c, '\0'};
    };
    widen(ascii);
    bytes += middle;
    widen(rest);
    return bytes;
}

std::string bomb() {
    std::string text = "<!DOCTYPE plist [<!ENTITY a 'aaaaaaaaaa'>";
    for (char c = 'b'; c <= 'z'; ++c) {
        text += "<!ENTITY "s + c + " '";
        for (int i = 0; i < 10; ++i) text += "&"s + static_cast<char>(c - 1) + ";";
        text += "'>";
    }
    return text + "]>";
}

std::string manyKeys() {
    std::string text = "<dict>";
    for (int i = 0; text.size() < usual; ++i) text += "<key>" + std::to_string(i) + "</key><true/>";
    return text + "</dict>";
}

Binary wide(std::vector<std::string> objects) {
    Binary binary{std::move(objects)};
    binary.offsetSize = binary.referenceSize = 4;
    return binary;
}

std::string reference(std::uint64_t object) {
    return Binary::number(object, 4);
}

std::string dictionaryOfOne(std::uint64_t key, std::uint64_t object) {
    return "\xD1" + reference(key) + reference(object);
}

// Arrays in one another, the last of which holds the object of a number.
std::string nested(std::uint64_t last) {
    Binary binary = wide({dictionaryOfOne(1, 2), "\x51"s + "a"});
    for (std::uint64_t i = 2; i < levels + 2; ++i) binary.objects.push_back("\xA1" + reference(i + 1));
    binary.objects.back() = "\xA1" + reference(last);
    binary.objects.push_back("\x09");
    return binary.bytes();
}

// An object of a kind, whose content lies behind a size of four bytes.
std::string large(char kind, std::size_t count, const std::string& content) {
    return std::string(1, kind) + "\x12" + Binary::number(count, 4) + content;
}

// Held by a dictionary.
std::string holdingLarge(const std::string& object, const std::vector<std::string>& others = {}) {
    Binary binary = wide({dictionaryOfOne(1, 2), "\x51"s + "a", object});
    binary.objects.insert(binary.objects.end(), others.begin(), others.end());
    return binary.bytes();
}

std::string manyBinaryKeys() {
    constexpr std::size_t count = 600'000;
    Binary binary = wide({{}});
    std::string keys, values;
    for (std::size_t i = 0; i < count; ++i) {
        keys += reference(i + 1);
        values += reference(count + 1);
        binary.objects.push_back("\x56" + std::to_string(100'000 + i));
    }
    binary.objects[0] = large('\xDF', count, keys + values);
    binary.objects.push_back("\x09");
    return binary.bytes();
}

// Each array holds the next one ten times.
std::string unfolding() {
    std::vector<std::string> others;
    for (std::uint64_t i = 0; i < 30; ++i) others.push_back("\xAA" + times(reference(4 + i), 10));
    others.push_back("\x09");
    others.push_back(large('\x4F', usual, std::string(usual, 'x')));
    return holdingLarge("\xA1" + reference(3), others);
}

TEST(Limits, AreASmallMultipleOfTheFile) {
    struct Row {
        const char* what;
        std::string (*file)();
        bool isList;
    };
    const Row table[] = {
        {"a million levels of arrays", [] { return value(times("<array>", levels) + times("</array>", levels)); },
         true},
        {"a million levels of dictionaries",
         [] { return value(times("<dict><key/>", levels) + "<true/>" + times("</dict>", levels)); }, true},
        {"a million levels without an end", [] { return value(times("<array>", levels)); }, false},
        {"a billion laughs", [] { return bomb() + value("<string>" + repeated("&z;", usual) + "</string>"); }, false},
        {"a key of 100 MB", [] { return "<dict><key>" + std::string(100 * megabyte, 'k') + "</key><true/></dict>"; },
         true},
        {"a key of references", [] { return "<dict><key>" + repeated("&#x10FFFD;", usual) + "</key><true/></dict>"; },
         true},
        {"a key in UTF-16", [] { return utf16("<dict><key>", repeated("\x2D\x4E", usual), "</key><true/></dict>"); },
         true},
        {"short keys", manyKeys, true},
        {"attributes", [] { return "<dict" + repeated(" a='&amp;'", usual) + "></dict>"; }, true},
        {"comments", [] { return value("<string>" + repeated("<!---->", usual) + "</string>"); }, true},
        {"empty entries", [] { return value("<array>" + repeated("<dict/>", usual) + "</array>"); }, true},
        {"a comment without an end", [] { return "<dict><!--" + repeated("-> ", usual); }, false},
        {"NULs", [] { return std::string(usual, '\0'); }, false},
        {"NULs in a string", [] { return value("<string>" + std::string(usual, '\0') + "</string>"); }, false},
        {"lone surrogates", [] { return utf16("<dict><key>", repeated("\x3D\xD8", usual), "</key>"); }, false},
        {"a binary million levels", [] { return nested(levels + 2); }, true},
        {"a binary circle of a million", [] { return nested(2); }, false},
        {"a binary unfolding", unfolding, false},
        {"a binary string of ampersands", [] { return holdingLarge(large('\x5F', usual, std::string(usual, '&'))); },
         true},
        {"a binary string of controls", [] { return holdingLarge(large('\x5F', usual, std::string(usual, '\1'))); },
         true},
        {"binary data", [] { return holdingLarge(large('\x4F', usual, std::string(usual, 'x'))); }, true},
        {"binary data as overlapping objects",
         [] { return holdingLarge(large('\xAF', usual / 4, repeated(reference(2), usual))); }, false},
        {"binary references to one string",
         [] {
             return holdingLarge(large('\xAF', usual / 4, repeated(reference(3), usual)),
                                 {"\x5F\x10\xFF" + std::string(255, 's')});
         },
         false},
        {"a binary string beyond the end", [] { return holdingLarge(large('\x5F', ~0U, std::string(usual, 's'))); },
         false},
        {"short binary keys", manyBinaryKeys, true},
    };
    const TemporaryDirectory directory;
    const auto from = directory / "file";
    for (const Row& row : table) {
        const auto size = inAProcessOfItsOwn<std::uintmax_t>([&] {
            put(from, row.file());
            return std::filesystem::file_size(from);
        });
        const auto outcome = inAProcessOfItsOwn<Outcome>([&] { return readAndWrite(from, directory / "again"); });
        EXPECT_EQ(outcome.isList, row.isList) << row.what;
        const double multiple = static_cast<double>(outcome.kilobytes) * 1024 / static_cast<double>(size);
        EXPECT_LE(multiple, 8) << row.what;
        std::cout << std::fixed << std::setprecision(2) << std::setw(8) << static_cast<double>(size) / megabyte
                  << " MB " << std::setw(6) << outcome.seconds << " s, " << std::setprecision(1) << multiple
                  << " times its memory: " << row.what << '\n';
    }
}

}  // namespace
}  // namespace store
