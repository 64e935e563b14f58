#include "store/plist/BinaryPropertyList.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "Binary.h"
#include "Files.h"
#include "Values.h"
#include "store/rules/RuleFile.h"

namespace store {
namespace {

using namespace std::string_literals;

TEST(BinaryPropertyList, ReadsEveryKind) {
    struct Row {
        std::string file;
        const char* element;
    };
    const Row table[] = {
        {holding("\x09"), "<true/>"},
        {holding("\x08"), "<false/>"},
        {holding("\x10\xFF"), "<integer>255</integer>"},
        {holding("\x11\x01\x00"s), "<integer>256</integer>"},
        {holding("\x13\x80\0\0\0\0\0\0\0"s), "<integer>-9223372036854775808</integer>"},
        {holding("\x14" + std::string(8, '\0') + std::string(8, '\xFF')), "<integer>18446744073709551615</integer>"},
        {holding("\x14" + std::string(16, '\xFF')), "<integer>-1</integer>"},
        {holding("\x22\x3F\xC0\x00\x00"s), "<real>1.5</real>"},
        {holding("\x23" + real(-0.1)), "<real>-0.1</real>"},
        {holding("\x33" + real(-978307200.5)), "<date>1969-12-31T23:59:59Z</date>"},
        {holding("\x33" + real(-63113904000)), "<date>0001-01-01T00:00:00Z</date>"},
        {holding("\x42\x00\x01"s), "<data>AAE=</data>"},
        {holding("\x40"), "<data/>"},
        {holding("\x53<&>"), "<string>&lt;&amp;&gt;</string>"},
        {holding("\x5F\x10\x10"
                 "0123456789abcdef"),
         "<string>0123456789abcdef</string>"},
        {holding("\x62\x00\xE9\x4E\x2D"s), "<string>\u00E9\u4E2D</string>"},
        {holding("\xA0"), "<array/>"},
        {holding("\xD0"), "<dict/>"},
        {holding("\xA3\x03\x03\x01", {"\x09"}), "<array><true/><true/><string>a</string></array>"},
        {holding("\xD2\x01\x03\x04\x04", {"\x51"
                                          "b",
                                          "\x08"}),
         "<dict><key>a</key><false/><key>b</key><false/></dict>"},
    };
    for (const Row& row : table) {
        ReadResult result = readText(row.file);
        auto* dictionary = std::get_if<Dictionary>(&result);
        ASSERT_TRUE(dictionary) << row.element << ": " << testing::PrintToString(std::get<ReadError>(result));
        EXPECT_EQ(canonical(*dictionary),
                  canonical(dictionaryOf("<dict><key>a</key>" + std::string(row.element) + "</dict>")));
    }
}

TEST(BinaryPropertyList, RejectsWhatIsWrong) {
    using enum ReadFailure;
    struct Row {
        const char* what;
        std::string file;
        ReadFailure reason;
    };
    auto odd = [](auto change) {
        Binary binary{{"\xD1\x01\x02",
                       "\x51"
                       "a",
                       "\x09"}};
        change(binary);
        return binary.bytes();
    };
    const std::uint64_t huge = ~std::uint64_t{0};
    const Row table[] = {
        {"no trailer", "bplist00", unexpectedEnd},
        {"zero offset size", odd([](Binary& b) { b.offsetSize = 0; }), badTrailer},
        {"large offset size", odd([](Binary& b) { b.offsetSize = 9; }), badTrailer},
        {"zero reference size", odd([](Binary& b) { b.referenceSize = 0; }), badTrailer},
        {"no objects", odd([](Binary& b) { b.count = 0; }), badTrailer},
        {"too many objects", odd([](Binary& b) { b.count = 4; }), badTrailer},
        {"a count that overflows", odd([&](Binary& b) {
             b.count = huge / 2;
             b.offsetSize = 2;
         }),
         badTrailer},
        {"the top beyond the objects", odd([](Binary& b) { b.top = 3; }), badTrailer},
        {"the table beyond the file", odd([&](Binary& b) { b.table = huge; }), badTrailer},
        {"the table in the beginning", odd([](Binary& b) { b.table = 7; }), badTrailer},
        {"a reference beyond the objects", odd([](Binary& b) { b.objects[0] = "\xD1\x01\x03"; }), badOffset},
        {"references beyond the objects' end", odd([](Binary& b) { b.objects[2] = "\xAE\x00"s; }), badOffset},
        {"a top that is no dictionary", odd([](Binary& b) { b.top = 2; }), noDictionary},
        {"a key that is no string", odd([](Binary& b) { b.objects[1] = "\x09"; }), unsupportedObject},
        {"a dictionary in itself", holding("\xD1\x01\x00"s), containsItself},
        {"arrays in each other", holding("\xA1\x03", {"\xA1\x02"}), containsItself},
        {"a string beyond the end",
         holding("\x5E"
                 "a"),
         badOffset},
        {"a size beyond everything", holding("\x5F\x13" + std::string(8, '\xFF')), badOffset},
        {"a size that overflows", holding("\xDF\x13\x80" + std::string(7, '\0')), badOffset},
        {"a size that is no integer",
         holding("\x5F\x51"
                 "a"),
         badOffset},
        {"bytes beyond ASCII in an ASCII string", holding("\x51\xE9"), badEncoding},
        {"a lone surrogate", holding("\x61\xD8\x00"s), badEncoding},
        {"null", holding("\x00"s), unsupportedObject},
        {"a UID", holding("\x80\x01"), unsupportedObject},
        {"a set", holding("\xC0"), unsupportedObject},
        {"an odd integer", holding("\x14" + std::string(1, '\1') + std::string(15, '\0')), badInteger},
        {"an odd real", holding("\x21\x00\x00"s), unsupportedObject},
        {"a date that is none", holding("\x33" + real(std::numeric_limits<double>::quiet_NaN())), badDate},
        {"a date before the first year", holding("\x33" + real(-63113904001)), badDate},
        {"a date beyond the last year", holding("\x33" + real(252423993600)), badDate},
        {"a character that XML cannot carry is replaced, not an error; an unfinished date is one", holding("\x33\x00"s),
         badOffset},
    };
    for (const Row& row : table) {
        ReadResult result = readText(row.file);
        auto* error = std::get_if<ReadError>(&result);
        ASSERT_TRUE(error) << row.what;
        EXPECT_EQ(error->reason, row.reason) << row.what;
        EXPECT_LE(error->byte, row.file.size()) << row.what;
    }
}

// Thirty arrays, each holding the next one ten times: nothing on disk, everything in memory.
TEST(BinaryPropertyList, RejectsWhatUnfoldsWithoutEnd) {
    std::vector<std::string> others;
    for (int i = 0; i < 30; ++i) others.push_back("\xAA" + std::string(10, static_cast<char>(4 + i)));
    others.push_back("\x09");
    auto error = std::get<ReadError>(readText(holding("\xA1\x03", others)));
    EXPECT_EQ(error.reason, ReadFailure::tooLarge);
}

TEST(BinaryPropertyList, TakesAnyDepth) {
    Binary binary{{"\xD1" + Binary::number(1, 4) + Binary::number(2, 4),
                   "\x51"
                   "a"}};
    binary.referenceSize = binary.offsetSize = 4;
    for (std::uint64_t i = 2; i < 20'000; ++i) binary.objects.push_back("\xA1" + Binary::number(i + 1, 4));
    binary.objects.push_back("\x09");
    EXPECT_EQ(std::get<Dictionary>(readText(binary.bytes())).find("a")->kind(), Kind::array);
}

// Nothing is looked at beyond the file, and nothing is believed, whatever byte is wrong.
TEST(BinaryPropertyList, SurvivesEveryWrongByteAndEveryCut) {
    std::string file = holding("\xA4\x01\x03\x04\x05", {"\x33" + real(0), "\x5F\x10\x02xy", "\xD1\x01\x03"});
    ASSERT_TRUE(std::holds_alternative<Dictionary>(readText(file)));
    for (std::size_t at = 8; at < file.size(); ++at) {
        std::string changed = file;
        for (int byte = 0; byte < 256; ++byte) {
            changed[at] = static_cast<char>(byte);
            readText(changed);
        }
        EXPECT_TRUE(std::holds_alternative<ReadError>(readText(file.substr(0, at)))) << at;
    }
}

// Another maker's writer: what it says is the same in both forms, and the XML is ours to the byte.
TEST(BinaryPropertyList, SaysWhatTheXmlSays) {
    const TemporaryDirectory directory;
    put(directory / "program.py",
        "import plistlib, datetime\n"
        "value = {'text': 'a\\u00e9\\U0001F600<&>', 'yes': True, 'no': False, 'int': -5, 'big': 2**64-1,\n"
        "  'real': 0.1, 'date': datetime.datetime(2013, 5, 4, 17, 3, 9), 'data': bytes(range(256)),\n"
        "  'list': [{'rule': 'x%d' % i, 'n': i} for i in range(300)], 'empty': [{}, [], '', b'']}\n"
        "plistlib.dump(value, open('binary', 'wb'), fmt=plistlib.FMT_BINARY)\n"
        "plistlib.dump(value, open('xml', 'wb'))\n");
    ASSERT_EQ(std::system(("cd '" + directory.path().string() + "' && python3 program.py").c_str()), 0);
    std::optional<Dictionary> binary = readRuleFile(directory / "binary");
    std::optional<Dictionary> xml = readRuleFile(directory / "xml");
    ASSERT_TRUE(binary && xml);
    EXPECT_EQ(canonical(*binary), canonical(*xml));
    EXPECT_EQ(contentOf(directory / "xml"), canonical(*xml));
}

}  // namespace
}  // namespace store
