// Files that were made to hurt: each is read, and written again if it is a list, in a process of its own, which must
// get by with a small multiple of the file's size.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "Binary.h"
#include "Child.h"
#include "Files.h"
#include "Values.h"
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
    long kilobytes = 0;  // more than before
};

long mostKilobytes() {
    struct rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

std::string repeated(std::string_view text, std::size_t size) {
    std::string all;
    for (all.reserve(size + text.size()); all.size() < size;) all += text;
    return all;
}

std::string times(std::string_view text, std::size_t count) {
    return repeated(text, count * text.size());
}

// A key of many code units.
std::string keyOf(char16_t unit) {
    return utf16(u"\xFEFF<dict><key>" + std::u16string(usual / 2, unit) + u"</key><true/></dict>");
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

std::string reference(std::uint64_t object) {
    return Binary::number(object, 4);
}

// Arrays in one another, the last of which holds the object of a number.
std::string nested(std::uint64_t last) {
    Binary binary = holder({}, {}, 4);
    binary.objects.pop_back();
    for (std::uint64_t i = 2; i < levels + 2; ++i) binary.objects.push_back("\xA1" + reference(i + 1));
    binary.objects.back() = "\xA1" + reference(last);
    binary.objects.push_back("\x09");
    return binary.bytes();
}

// An object of a kind, whose content lies behind a size of four bytes.
std::string large(char kind, std::size_t count, const std::string& content) {
    return std::string(1, kind) + "\x12" + Binary::number(count, 4) + content;
}

std::string holdingLarge(char kind, std::size_t count, const std::string& content) {
    return holding(large(kind, count, content), {}, 4);
}

std::string manyBinaryKeys() {
    constexpr std::size_t count = 600'000;
    Binary binary = holder({}, {}, 4);
    std::string keys, values;
    for (std::size_t i = 0; i < count; ++i) {
        keys += reference(i + 3);
        values += reference(1);
        binary.objects.push_back(ascii(std::to_string(100'000 + i)));
    }
    binary.objects[2] = large('\xDF', count, keys + values);
    return binary.bytes();
}

// Each array holds the next one ten times.
std::string unfolding() {
    std::vector<std::string> others;
    for (std::uint64_t i = 0; i < 30; ++i) others.push_back("\xAA" + times(reference(4 + i), 10));
    others.push_back("\x09");
    others.push_back(large('\x4F', usual, std::string(usual, 'x')));
    return holding("\xA1" + reference(3), others, 4);
}

TEST(Limits, AreASmallMultipleOfTheFile) {
    const std::tuple<const char*, bool, std::string (*)()> table[] = {
        {"levels of arrays", true, [] { return holdingXml(times("<array>", levels) + times("</array>", levels)); }},
        {"levels of dictionaries", true,
         [] { return holdingXml(times("<dict><key/>", levels) + "<true/>" + times("</dict>", levels)); }},
        {"levels without an end", false, [] { return holdingXml(times("<array>", levels)); }},
        {"a billion laughs", false,
         [] { return bomb() + holdingXml("<string>" + repeated("&z;", usual) + "</string>"); }},
        {"a key of 100 MB", true,
         [] { return "<dict><key>" + std::string(100 * megabyte, 'k') + "</key><true/></dict>"; }},
        {"a key of references", true,
         [] { return "<dict><key>" + repeated("&#x10FFFD;", usual) + "</key><true/></dict>"; }},
        {"a key in UTF-16", true, [] { return keyOf(u'\x4E2D'); }},
        {"short keys", true, manyKeys},
        {"attributes", true, [] { return "<dict" + repeated(" a='&amp;'", usual) + "></dict>"; }},
        {"comments", true, [] { return holdingXml("<string>" + repeated("<!---->", usual) + "</string>"); }},
        {"empty entries", true, [] { return holdingXml("<array>" + repeated("<dict/>", usual) + "</array>"); }},
        {"a comment without an end", false, [] { return "<dict><!--" + repeated("-> ", usual); }},
        {"NULs", false, [] { return std::string(usual, '\0'); }},
        {"NULs in a string", false, [] { return holdingXml("<string>" + std::string(usual, '\0') + "</string>"); }},
        {"lone surrogates", false, [] { return keyOf(u'\xD83D'); }},
        {"binary levels", true, [] { return nested(levels + 2); }},
        {"a binary circle", false, [] { return nested(2); }},
        {"a binary unfolding", false, unfolding},
        {"binary ampersands", true, [] { return holdingLarge('\x5F', usual, std::string(usual, '&')); }},
        {"binary controls", true, [] { return holdingLarge('\x5F', usual, std::string(usual, '\1')); }},
        {"binary data", true, [] { return holdingLarge('\x4F', usual, std::string(usual, 'x')); }},
        {"binary overlaps", false, [] { return holdingLarge('\xAF', usual / 4, repeated(reference(2), usual)); }},
        {"binary references to one string", false,
         [] {
             return holding(large('\xAF', usual / 4, repeated(reference(3), usual)),
                            {"\x5F\x10\xFF" + std::string(255, 's')}, 4);
         }},
        {"a binary string beyond the end", false, [] { return holdingLarge('\x5F', ~0U, std::string(usual, 's')); }},
        {"short binary keys", true, manyBinaryKeys},
    };
    const TemporaryDirectory directory;
    const auto from = directory / "file";
    for (const auto& [what, isList, make] : table) {
        // Memory that this process has had is no measure for what comes later: it never does anything itself.
        const auto makeFile = [&, make = make] {
            put(from, make());
            return 0;
        };
        const Shared<Outcome> outcome;
        const auto readAndWrite = [&] {
            const long before = mostKilobytes();
            const std::optional<Dictionary> dictionary = readRuleFile(from);
            *outcome = {dictionary && writeDictionary(directory / "again", *dictionary), mostKilobytes() - before};
            return 0;
        };
        ASSERT_EQ(inChild(makeFile), 0) << what;
        ASSERT_EQ(inChild(readAndWrite), 0) << "it did not survive " << what;
        EXPECT_EQ((*outcome).isList, isList) << what;
        const auto size = static_cast<double>(std::filesystem::file_size(from));
        const double multiple = static_cast<double>((*outcome).kilobytes) * 1024 / size;
        EXPECT_LE(multiple, 8) << what;
    }
}

}  // namespace
}  // namespace store
