#include "store/plist/BinaryPropertyList.h"

#include <gtest/gtest.h>

#include <limits>

#include "Binary.h"
#include "Values.h"

namespace store {
namespace {

using namespace std::string_literals;

TEST(BinaryPropertyList, ReadsEveryKind) {
    const std::pair<std::string, const char*> table[] = {
        {holding("\x09"), "<true/>"},
        {holding("\x08"), "<false/>"},
        {holding("\x09", {}, 2), "<true/>"},
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
        {holding(ascii("<&>")), "<string>&lt;&amp;&gt;</string>"},
        {holding("\x5F\x10\x10"s + "0123456789abcdef"), "<string>0123456789abcdef</string>"},
        {holding("\x62\x00\xE9\x4E\x2D"s), "<string>\u00E9\u4E2D</string>"},
        {holding("\xA0"), "<array/>"},
        {holding("\xD0"), "<dict/>"},
        {holding("\xA3\x03\x03\x01", {"\xA1\x04", "\x09"}),
         "<array><array><true/></array><array><true/></array><string>a</string></array>"},
        {holding("\xD2\x01\x03\x04\x04", {ascii("b"), "\x08"}),
         "<dict><key>a</key><false/><key>b</key><false/></dict>"},
    };
    for (const auto& [file, element] : table) {
        ReadResult result = readText(file);
        auto* dictionary = std::get_if<Dictionary>(&result);
        ASSERT_TRUE(dictionary) << element << ": " << outcome(result);
        EXPECT_EQ(canonical(*dictionary), canonical(dictionaryOf(holdingXml(element))));
    }
}

TEST(BinaryPropertyList, RejectsWhatIsWrong) {
    using enum ReadFailure;
    auto odd = [](auto change) {
        Binary binary = holder("\x09");
        change(binary);
        return binary.bytes();
    };
    const std::uint64_t huge = ~std::uint64_t{0};
    const std::tuple<const char*, std::string, ReadFailure> table[] = {
        {"no trailer", "bplist00", unexpectedEnd},
        {"zero offset size", odd([](Binary& b) { b.offsetSize = 0; }), badTrailer},
        {"large offset size", odd([](Binary& b) { b.offsetSize = 9; }), badTrailer},
        {"zero reference size", odd([](Binary& b) { b.referenceSize = 0; }), badTrailer},
        {"no objects", odd([](Binary& b) { b.count = 0; }), badTrailer},
        {"too many objects", odd([](Binary& b) { b.count = 4; }), badTrailer},
        {"a count that overflows", odd([&](Binary& b) { b.count = huge / 4 + 1; }), badTrailer},
        {"the top beyond the objects", odd([](Binary& b) { b.top = 3; }), badTrailer},
        {"the table beyond the file", odd([&](Binary& b) { b.table = huge; }), badTrailer},
        {"the table in the beginning", odd([](Binary& b) { b.table = 7; }), badTrailer},
        {"a reference beyond the objects", odd([](Binary& b) { b.objects[0] = "\xD1\x01\x03"; }), badOffset},
        {"elements beyond the objects' end", holding("\xAE\x00"s), badOffset},
        {"values beyond the objects' end", holding("\xD1\x01"), badOffset},
        {"a top that is no dictionary", odd([](Binary& b) { b.top = 2; }), noDictionary},
        {"a key that is no string", odd([](Binary& b) { b.objects[1] = "\x09"; }), unsupportedObject},
        {"a dictionary in itself", holding("\xD1\x01\x00"s), containsItself},
        {"arrays in each other", holding("\xA1\x03", {"\xA1\x02"}), containsItself},
        {"a string beyond the end", holding("\x5E"s + "a"), badOffset},
        {"a size beyond everything", holding("\x5F\x13" + std::string(8, '\xFF')), badOffset},
        {"a size that overflows", holding("\xDF\x13\x80" + std::string(7, '\0')), badOffset},
        {"a size that is no integer", holding("\x5F" + ascii("a")), badOffset},
        {"bytes beyond ASCII in an ASCII string", holding("\x51\xE9"), badEncoding},
        {"a lone surrogate", holding("\x61\xD8\x00"s), badEncoding},
        {"null", holding("\x00"s), unsupportedObject},
        {"a UID", holding("\x80\x01"), unsupportedObject},
        {"a set", holding("\xC0"), unsupportedObject},
        {"an odd integer", holding("\x14\x01" + std::string(15, '\0')), badInteger},
        {"an odd real", holding("\x21\x00\x00"s), unsupportedObject},
        {"a date that is none", holding("\x33" + real(std::numeric_limits<double>::quiet_NaN())), badDate},
        {"a date before the first year", holding("\x33" + real(-63113904001)), badDate},
        {"a date beyond the last year", holding("\x33" + real(252423993600)), badDate},
        {"an unfinished date", holding("\x33\x00"s), badOffset},
    };
    for (const auto& [what, file, reason] : table) {
        ReadResult result = readText(file);
        auto* error = std::get_if<ReadError>(&result);
        ASSERT_TRUE(error) << what;
        EXPECT_EQ(error->reason, reason) << what;
        EXPECT_LE(error->byte, file.size()) << what;
    }
}

}  // namespace
}  // namespace store
