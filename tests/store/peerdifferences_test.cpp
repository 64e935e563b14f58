// Where we and two other makers, Python's plistlib and libplist, do not read the same files, and some of where we do.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "store/peers/Peers.h"

namespace store {
namespace {

using namespace std::string_literals;

// What each maker accepts: '+' reads it, '!' reads something else than the first of them that reads it, '-' does not.
std::string summary(const Opinions& opinions) {
    std::string text;
    std::optional<std::string> first;
    for (const auto& opinion : {opinions.ours, opinions.plistlib, opinions.libplist}) {
        text += !opinion ? '-' : !first || first == opinion ? '+' : '!';
        if (!first) first = opinion;
    }
    return text;
}

TEST(PeerDifferences, AreTheKnownOnes) {
    const auto value = [](const std::string& element) {
        return "<?xml version=\"1.0\"?><plist><dict><key>a</key>" + element + "</dict></plist>";
    };
    const auto date = [&](const std::string& text) { return value("<date>" + text + "</date>"); };
    const auto integer = [&](const std::string& text) { return value("<integer>" + text + "</integer>"); };
    const auto reals = [&](const std::string& text) { return value("<real>" + text + "</real>"); };
    const auto data = [&](const std::string& text) { return value("<data>" + text + "</data>"); };
    const auto string = [&](const std::string& text) { return value("<string>" + text + "</string>"); };
    const struct {
        const char* what;
        std::string file;
        const char* makers;  // ours, plistlib, libplist
    } table[] = {
        // The frame.
        {"no wrapping", "<dict/>", "+--"},
        {"no declaration", "<plist><dict/></plist>", "+++"},
        {"a byte-order mark", "\xEF\xBB\xBF<?xml version='1.0'?><plist><dict/></plist>", "++-"},
        {"UTF-16", "\xFF\xFE<\0d\0i\0c\0t\0/\0>\0"s, "+--"},
        {"another encoding",
         "<?xml version='1.0' encoding='ISO-8859-1'?><plist><dict><key>\xE9</key><true/></dict></plist>", "-+!"},
        {"a line break before the declaration", "\n<?xml version='1.0'?><plist><dict/></plist>", "+-+"},
        {"instructions", "<?xml version='1.0'?><?p q?><plist><?p?><dict/></plist>", "+++"},
        {"an entity of its own", "<!DOCTYPE plist [<!ENTITY e 'x'>]><plist><dict><key>&e;</key><true/></dict></plist>",
         "---"},
        {"two roots", "<plist><dict/><array/></plist>", "---"},
        {"two dictionaries", "<plist><dict/><dict/></plist>", "-+-"},
        {"text behind the list", "<plist><dict/></plist>x", "---"},
        {"an array", "<plist><array/></plist>", "---"},
        {"a list that is cut", "<plist><dict/>", "---"},
        // Structure.
        {"equal keys", value("<true/><key>a</key><false/>"), "+++"},
        {"an empty key", value("<true/><key/><false/>"), "++-"},
        {"a key without a value", value(""), "--+"},
        {"a value without a key", value("<true/><true/>"), "---"},
        {"a key in an array", value("<array><key>b</key></array>"), "--+"},
        {"text in a dictionary", value("<true/>x"), "-+-"},
        {"text in a Boolean", value("<true>x</true>"), "-++"},
        {"an element nobody knows", value("<set/>"), "---"},
        {"attributes", value("<string a='1' b=\"2\">x</string>"), "+++"},
        {"the same attribute twice", value("<string a='1' a='2'>x</string>"), "+-+"},
        {"an attribute without quotes", value("<string a=1>x</string>"), "--+"},
        // Texts.
        {"references", string("&#97;&#x1F600;&lt;&gt;&amp;&apos;&quot;&#13;"), "+++"},
        {"a section", string("<![CDATA[<&]]>"), "+++"},
        {"an instruction", string("a<?p?>"), "++-"},
        {"the end of a section alone", string("]]>"), "+-+"},
        {"a carriage return and a line feed", string("1\r\n2"), "+!+"},
        {"a control character", string("\1"), "--+"},
        {"a reference to one", string("&#1;"), "--+"},
        {"a NUL", string("\0"s), "--+"},
        {"a lone surrogate", string("\xED\xA0\x80"), "--+"},
        {"a reference to one", string("&#xD800;"), "--+"},
        {"an overlong form", string("\xC0\x80"), "--+"},
        {"no UTF-8", string("\xE9"), "--+"},
        {"a noncharacter", string("\xEF\xBF\xBE"), "--+"},
        // Dates.
        {"white space around a date", date(" 2013-05-04T17:03:09Z\n"), "+-+"},
        {"something behind a date", date("2013-05-04T17:03:09Zx"), "-++"},
        {"a date without seconds", date("2013-05-04T17:03Z"), "-++"},
        {"a date without a Z", date("2013-05-04T17:03:09"), "--+"},
        {"a date without a time", date("2013-05-04"), "--+"},
        {"a day that is none", date("2013-02-30T00:00:00Z"), "--+"},
        {"an hour that is none", date("2013-02-03T24:00:00Z"), "--+"},
        {"year 0", date("0000-05-04T17:03:09Z"), "--+"},
        {"a year before it", date("-9999-05-04T17:03:09Z"), "--+"},
        {"a year of five digits", date("99999-05-04T17:03:09Z"), "--+"},
        {"year 1", date("0001-01-01T00:00:00Z"), "++!"},
        {"year 9999", date("9999-12-31T23:59:59Z"), "++!"},
        // Numbers.
        {"white space around an integer", integer(" 5 "), "+++"},
        {"a sign", integer("+7"), "+++"},
        {"hexadecimal", integer("0x10"), "+++"},
        {"hexadecimal below 0", integer("-0x10"), "+-+"},
        {"2^64-1", integer("18446744073709551615"), "+++"},
        {"2^64", integer("18446744073709551616"), "-+!"},
        {"a letter in an integer", integer("1x"), "--+"},
        {"no integer", integer(""), "--+"},
        {"no number", reals("nan"), "+++"},
        {"infinity", reals("-inf"), "+++"},
        {"infinity in full", reals("+infinity"), "+++"},
        {"more than a double holds", reals("1e999"), "-++"},
        {"a hexadecimal real", reals("0x1p3"), "--+"},
        {"a letter in a real", reals("1x"), "--+"},
        // Data.
        {"white space in data", data(" A\nA = ="), "+++"},
        {"no data", data(""), "+++"},
        {"bits too many", data("AB=="), "+++"},
        {"no Base64", data("!!!!"), "-++"},
        {"no padding", data("AA"), "--+"},
        {"padding in the middle", data("AA==AA=="), "-+!"},
    };
    std::vector<std::string> files;
    for (const auto& row : table) files.push_back(row.file);
    const std::vector<Opinions> opinions = opinionsOf(files);
    for (std::size_t i = 0; i < files.size(); ++i) EXPECT_EQ(summary(opinions[i]), table[i].makers) << table[i].what;
}

}  // namespace
}  // namespace store
