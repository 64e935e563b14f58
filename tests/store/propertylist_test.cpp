#include "store/plist/PropertyList.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "LargeRuleList.h"
#include "Values.h"
#include "store/plist/Scalars.h"
#include "store/plist/XmlReader.h"
#include "store/plist/XmlText.h"

namespace store {
namespace {

using namespace std::string_literals;

std::string wrapped(std::string_view content) {
    return "<plist><dict>" + std::string(content) + "</dict></plist>";
}

std::string contentOf(const Dictionary& dictionary) {
    if (dictionary.empty()) return "";
    const std::string text = canonical(dictionary);
    const std::size_t begin = text.find("<dict>\n") + 7;
    std::string content = text.substr(begin, text.rfind("</dict>") - begin);
    std::erase_if(content, [](char c) { return c == '\n' || c == '\t'; });
    return content;
}

TEST(PropertyListReading, Accepts) {
    // The outermost dictionary's content as it is written back.
    const std::tuple<const char*, std::string, const char*> table[] = {
        {"without any wrapping", "<dict/>", ""},
        {"without a declaration", wrapped("<key>a</key><true/>"), "<key>a</key><true/>"},
        {"the whole prolog",
         "<?xml version='1.0' encoding='utf-8' standalone='no' ?><!-- c --><!DOCTYPE plist PUBLIC \"a>b\" 'c>d' [ "
         "<!ENTITY x \"]>\"> <!-- ' --> <?p ' ?> ]><?p q?><plist version=\"1.0\"><dict/></plist><!-- e --><?p?>\n",
         ""},
        {"a line break before the declaration", "\n <?xml version='1.0'?><dict/>", ""},
        {"a byte-order mark", "\xEF\xBB\xBF<?xml version='1.0'?><dict/>", ""},
        {"UTF-16, big end first", utf16(u"\xFEFF<dict><key>\x00E9</key><string>\xD83D\xDE00</string></dict>", true),
         "<key>\u00E9</key><string>\U0001F600</string>"},
        {"UTF-16, little end first",
         utf16(u"\xFEFF<?xml version='1.0' encoding='UTF-16'?><dict><key>\x4E2D</key><true/></dict>", false),
         "<key>\u4E2D</key><true/>"},
        {"attributes nobody knows", "<dict a='1' b = \"&lt;>\"><key c=''>k</key><array d='/'/></dict>",
         "<key>k</key><array/>"},
        {"white space in tags", "<dict ><key >a</key\n><true /></dict\t>", "<key>a</key><true/>"},
        {"comments, sections and instructions in a text",
         wrapped("<key>a</key><string>1<!-- < & --><![CDATA[<b>&amp;]]]]><?p <x> ?>2</string>"),
         "<key>a</key><string>1&lt;b&gt;&amp;amp;]]2</string>"},
        {"comments between elements", wrapped("<!-- a --><key>a</key><!--b--><?c?><array><!----></array>"),
         "<key>a</key><array/>"},
        {"references", wrapped("<key>&#97;</key><string>&lt;&gt;&amp;&quot;&apos;&#x1F600;&#00013;</string>"),
         "<key>a</key><string>&lt;&gt;&amp;\"'\U0001F600&#13;</string>"},
        {"a carriage return and the end of a section", wrapped("<key>a</key><string>1\r2]]></string>"),
         "<key>a</key><string>1&#13;2]]&gt;</string>"},
        {"empty elements", wrapped("<key/><string/><key>a</key><data/><key>b</key><dict></dict>"),
         "<key></key><string></string><key>a</key><data></data><key>b</key><dict/>"},
        {"Booleans with room inside", wrapped("<key>a</key><true></true><key>b</key><false> </false>"),
         "<key>a</key><true/><key>b</key><false/>"},
        {"equal keys", wrapped("<key>a</key><true/><key>a</key><false/>"), "<key>a</key><false/>"},
        {"equal keys below", wrapped("<key>d</key><dict><key>a</key><true/><key>a</key><false/></dict>"),
         "<key>d</key><dict><key>a</key><false/></dict>"},
        {"dates",
         wrapped("<key>a</key><date>2000-02-29T23:59:59Z</date><key>b</key><date>\n0001-01-01T00:00:00Z </date>"),
         "<key>a</key><date>2000-02-29T23:59:59Z</date><key>b</key><date>0001-01-01T00:00:00Z</date>"},
        {"integers",
         wrapped("<key>a</key><integer> -9223372036854775808 </integer><key>b</key><integer>0xfF</integer>"
                 "<key>c</key><integer>-0x7</integer><key>d</key><integer>18446744073709551615</integer>"
                 "<key>e</key><integer><!-- -->1<![CDATA[2]]></integer>"),
         "<key>a</key><integer>-9223372036854775808</integer><key>b</key><integer>255</integer>"
         "<key>c</key><integer>-7</integer><key>d</key><integer>18446744073709551615</integer>"
         "<key>e</key><integer>12</integer>"},
        {"reals",
         wrapped("<key>a</key><real> -1.5e3 </real><key>b</key><real>NaN</real><key>c</key><real>-inf</real>"
                 "<key>d</key><real>+Infinity</real><key>e</key><real>3</real>"),
         "<key>a</key><real>-1500</real><key>b</key><real>nan</real><key>c</key><real>-infinity</real>"
         "<key>d</key><real>+infinity</real><key>e</key><real>3</real>"},
        {"data", wrapped("<key>a</key><data> A A\n==</data><key>b</key><data>AAE=</data><key>c</key><data>/+8A</data>"),
         "<key>a</key><data>AA==</data><key>b</key><data>AAE=</data><key>c</key><data>/+8A</data>"},
        {"characters at the borders",
         wrapped("<key>a</key><string>\x7F\xC2\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD"
                 "\xF4\x8F\xBF\xBF</string>"),
         "<key>a</key><string>\x7F\xC2\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD\xF4\x8F\xBF\xBF</string>"},
    };
    for (const auto& [what, text, content] : table) {
        ReadResult result = readText(text);
        auto* dictionary = std::get_if<Dictionary>(&result);
        ASSERT_TRUE(dictionary) << what << ": " << outcome(result);
        EXPECT_EQ(contentOf(*dictionary), content) << what;
    }
}

TEST(PropertyListReading, Rejects) {
    using enum ReadFailure;
    auto value = [&](const std::string& element) { return wrapped("<key>a</key>" + element); };
    // What the error is at stands there in the text, and nowhere before; empty for the end.
    const std::tuple<std::string, ReadFailure, std::string> table[] = {
        // Characters and markup.
        {"", noDictionary, ""},
        {"<plist>", unexpectedEnd, ""},
        {"<dict><!-- a", unexpectedEnd, ""},
        {"\xEF\xBB\xBF", noDictionary, ""},
        {value("<string>\xC0\x80</string>"), badEncoding, "\xC0"},
        {value("<string>\xED\xA0\x80</string>"), badEncoding, "\xED"},
        {value("<string>\xF4\x90\x80\x80</string>"), badEncoding, "\xF4"},
        {value("<string>\xE2\x82</string>"), badEncoding, "\xE2"},
        {wrapped("\xFF"), badEncoding, "\xFF"},
        {"<?xml version='1.0' encoding='ISO-8859-1'?><dict/>", unsupportedEncoding, "ISO"},
        {"<?xml encoding=?><dict/>", badMarkup, "?><dict"},
        {value("<string>\x01</string>"), illegalCharacter, "\x01"},
        {value("<string>"s + '\0' + "</string>"), illegalCharacter, "\0"s},
        {wrapped("\x1F"), illegalCharacter, "\x1F"},
        {value("<string>\xEF\xBF\xBE</string>"), illegalCharacter, "\xEF"},
        {value("<string>&#0;</string>"), illegalCharacter, "&"},
        {value("<string>&#xD800;</string>"), illegalCharacter, "&"},
        {value("<string>&#99999999999;</string>"), illegalCharacter, "&"},
        {wrapped("<!-- \x02 -->"), illegalCharacter, "\x02"},
        {value("<array a='\x03'/>"), illegalCharacter, "\x03"},
        {value("<string>&nbsp;</string>"), unknownReference, "&"},
        {value("<string>&amp</string>"), unknownReference, "&"},
        {value("<string>&#;</string>"), unknownReference, "&"},
        {value("<string>&#xZ;</string>"), unknownReference, "&"},
        {"<!DOCTYPE plist [<!ENTITY e 'x'>]><dict><key>&e;</key><true/></dict>", unknownReference, "&"},
        {value("<array a='&e;'/>"), unknownReference, "&"},
        {value("< array/>"), badMarkup, "< "},
        {value("<array a/>"), badMarkup, "/>"},
        {value("<array a=b/>"), badMarkup, "b/>"},
        {value("<array a='<'/>"), badMarkup, "<'"},
        {value("<array a=''b=''/>"), badMarkup, "b="},
        {value("<array / >"), badMarkup, " >"},
        {wrapped("<?xml version='1.0'?>"), badMarkup, "<?xml"},
        {wrapped("<!DOCTYPE plist>"), badMarkup, "<!"},
        {wrapped("<!- -->"), badMarkup, "<!"},
        // Structure.
        {value("<strings/>"), unknownTag, "<strings"},
        {value("<String/>"), unknownTag, "<String"},
        {"<html/>", unknownTag, "<html"},
        {value("<array></dict>"), mismatchedTag, "</dict>"},
        {value("<string></array>"), mismatchedTag, "</array>"},
        {value("<string></str>"), mismatchedTag, "</str>"},
        {"</dict>", mismatchedTag, "</dict>"},
        {"<dict/></dict>", mismatchedTag, "</dict>"},
        {"<plist><dict/></dict></plist>", mismatchedTag, "</dict>"},
        {value("<string><true/></string>"), misplacedTag, "<true"},
        {value("<true><array/></true>"), misplacedTag, "<array"},
        {value("<plist/>"), misplacedTag, "<plist/"},
        {value("<array><key>b</key></array>"), misplacedTag, "<key>b"},
        {wrapped("text"), misplacedText, "text"},
        {value("<array>1</array>"), misplacedText, "1"},
        {value("<array><![CDATA[]]></array>"), misplacedText, "<![CDATA"},
        {"text", misplacedText, "text"},
        {"<dict/>text", misplacedText, "text"},
        {value("<true>yes</true>"), misplacedText, "yes"},
        {value(""), keyWithoutValue, "</dict>"},
        {wrapped("<key>a</key><key>b</key>"), keyWithoutValue, "<key>b"},
        {value("<dict><key>b</key></dict>"), keyWithoutValue, "</dict>"},
        {wrapped("<true/>"), valueWithoutKey, "<true"},
        {value("<array><dict><integer>1</integer></dict></array>"), valueWithoutKey, "<integer"},
        {"<array/>", noDictionary, "<array"},
        {"<plist/>", noDictionary, "<plist"},
        {"<plist></plist>", noDictionary, "</plist"},
        {"<plist><plist/></plist>", noDictionary, "<plist/"},
        {"<dict/><dict>", secondRoot, "<dict>"},
        {"<plist><dict/><array/></plist>", secondRoot, "<array"},
        // Values.
        {value("<date>2001-02-29T00:00:00Z</date>"), badDate, "2001"},
        {value("<date>2001-01-01T24:00:00Z</date>"), badDate, "2001"},
        {value("<date>2001-01-01T00:60:00Z</date>"), badDate, "2001"},
        {value("<date>2001-01-01T00:00:60Z</date>"), badDate, "2001"},
        {value("<date>0000-01-01T00:00:00Z</date>"), badDate, "0000"},
        {value("<date>2001-01-01T00:00:00</date>"), badDate, "2001"},
        {value("<date>2001-01-01T00:00:00Zx</date>"), badDate, "2001"},
        {value("<date>2001-01-01 00:00:00Z</date>"), badDate, "2001"},
        {value("<date>+001-01-01T00:00:00Z</date>"), badDate, "+001"},
        {value("<date/>"), badDate, "</dict>"},
        {value("<integer>18446744073709551616</integer>"), badInteger, "184"},
        {value("<integer>-9223372036854775809</integer>"), badInteger, "-922"},
        {value("<integer>1.5</integer>"), badInteger, "1.5"},
        {value("<integer>0x</integer>"), badInteger, "0x"},
        {value("<integer>--1</integer>"), badInteger, "--1"},
        {value("<integer></integer>"), badInteger, "</integer>"},
        {value("<real>+-1</real>"), badReal, "+-1"},
        {value("<real>0x1p3</real>"), badReal, "0x1p3"},
        {value("<real>1e999</real>"), badReal, "1e999"},
        {value("<real/>"), badReal, "</dict>"},
        {value("<data>!!!!</data>"), badData, "!!!!"},
        {value("<data>A</data>"), badData, "A</data"},
        {value("<data>AA</data>"), badData, "AA</"},
        {value("<data>AA=</data>"), badData, "AA="},
        {value("<data>AA==AA==</data>"), badData, "AA=="},
    };
    for (const auto& [text, reason, at] : table) {
        ReadResult result = readText(text);
        auto* error = std::get_if<ReadError>(&result);
        ASSERT_TRUE(error) << text;
        EXPECT_EQ(error->reason, reason) << text;
        EXPECT_EQ(error->byte, at.empty() ? text.size() : text.find(at)) << text;
    }
}

TEST(PropertyListReading, ReportsWhereUtf16IsMalformed) {
    for (std::u16string_view text : {u"\xFEFF<dict>\xD800</dict>", u"\xFEFF<dict>\xDC00", u"\xFEFF<dict>\xD800"}) {
        auto error = std::get<ReadError>(readText(utf16(text, true)));
        EXPECT_EQ(error.reason, ReadFailure::badEncoding);
        EXPECT_EQ(error.byte, 14u);
    }
    EXPECT_EQ(std::get<ReadError>(readText(utf16(u"\xFEFF<dict/>", false) + " ")).byte, 16u);
}

// Skipping rule entries must accept, reject and find the same as parsing them.
bool readsAsTagByTag(const Buffer& text) {
    return outcome(readXml(text, std::make_shared<RuleEntryRuns>())) == outcome(readXml(text));
}

// So large that it is looked through in pieces, with a fault anywhere. Short ones are the fuzz target's matter.
TEST(PropertyListReading, TakesRunsOfRuleEntriesAsTagByTag) {
    std::mt19937 random(7);
    const LargeRuleList list(random);
    const std::string text = "<dict><key>first</key>" + list.array(0, 3) + "<key>second</key>" +
                             list.array(3, list.rules.size()) + "</dict>";
    EXPECT_TRUE(readsAsTagByTag(Buffer::copyOf(text)));
    for (int variant = 0; variant < 12; ++variant) {
        std::string changed = text;
        std::size_t at = random() % changed.size();
        // Behind an entry, where the next one is looked for, as well.
        if (variant % 3 == 0) at = text.find("</dict>\n", at) + 7;
        changed[at] = "<\xC3"[variant % 2];
        EXPECT_TRUE(readsAsTagByTag(Buffer::copyOf(changed))) << variant;
    }
}

TEST(PropertyListWriting, WritesEveryKind) {
    Dictionary record;
    record.set("on", Value(true));
    Dictionary dictionary;
    dictionary.set("z", Value(Array{Value("<&>\"'\r\n\t"), Value(""), Value(Array()), Value(Dictionary())}));
    dictionary.set("a&b", Value(Date(std::chrono::seconds(-1))));
    dictionary.set("Z", Value(std::numeric_limits<std::int64_t>::min()));
    dictionary.set("r", Value(0.1));
    dictionary.set("d", Value(std::vector<std::byte>(60, std::byte{0xFF})));
    dictionary.set("n", Value(record));
    dictionary.set("\u00E9", Value(std::string_view("\x01\xFF\xEF\xBF\xBF\0x", 7)));
    EXPECT_EQ(written(dictionary),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
              "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
              "<plist version=\"1.0\">\n<dict>\n"
              "\t<key>Z</key>\n\t<integer>-9223372036854775808</integer>\n"
              "\t<key>a&amp;b</key>\n\t<date>1969-12-31T23:59:59Z</date>\n"
              "\t<key>d</key>\n\t<data>\n"
              "\t////////////////////////////////////////////////////////////////////\n"
              "\t////////////\n\t</data>\n"
              "\t<key>n</key>\n\t<dict>\n\t\t<key>on</key>\n\t\t<true/>\n\t</dict>\n"
              "\t<key>r</key>\n\t<real>0.1</real>\n"
              "\t<key>z</key>\n\t<array>\n\t\t<string>&lt;&amp;&gt;\"'&#13;\n\t</string>\n\t\t<string></string>\n"
              "\t\t<array/>\n\t\t<dict/>\n\t</array>\n"
              "\t<key>\u00E9</key>\n\t<string>\uFFFD\uFFFD\uFFFD\uFFFDx</string>\n"
              "</dict>\n</plist>\n");
    EXPECT_EQ(canonical(dictionaryOf(written(dictionary))), written(dictionary));
}

// Built, written, read and taken apart without using up the stack.
TEST(PropertyListWriting, WritesValuesOfAnyDepth) {
    Value value(true);
    for (int i = 0; i < 300'000; ++i) value = i % 2 ? Value(dictionaryHolding(value)) : Value(Array{value});
    const Dictionary read = dictionaryOf(written(dictionaryHolding(value)));
    EXPECT_EQ(read.find("a")->dictionary()->find("a")->array()->front().kind(), Kind::dictionary);
}

TEST(PropertyListValue, TellsTruth) {
    const std::pair<bool, std::vector<const char*>> table[] = {
        {true,
         {"<true/>", "<integer>-2</integer>", "<integer>18446744073709551615</integer>", "<real>0.5</real>",
          "<string>yes</string>", "<string> True</string>", "<string>-007</string>"}},
        {false,
         {"<false/>", "<integer>0</integer>", "<real>0.0</real>", "<string>+0.5</string>", "<string>no</string>",
          "<string></string>", "<array><true/></array>", "<date>2001-01-01T00:00:00Z</date>"}},
    };
    for (const auto& [isTrue, elements] : table) {
        for (const char* element : elements) {
            const Value value = *dictionaryOf(holdingXml(element)).find("a");
            EXPECT_EQ(value.boolValue(), isTrue) << element;
            EXPECT_EQ(rebuilt(value).boolValue(), isTrue) << element;
        }
    }
}

TEST(Scalars, FormatsEveryDayOfTheCalendar) {
    using namespace std::chrono;
    for (sys_days day = sys_days(year(1) / 1 / 1); day < sys_days(year(10000) / 1 / 1); day += days(13)) {
        Date date = day + hours(23) + minutes(59) + seconds(58);
        char text[dateLength];
        formatDate(date, text);
        EXPECT_EQ(parseDate({text, dateLength}), date);
    }
    char text[dateLength];
    formatDate(Date::max(), text);
    EXPECT_EQ(std::string_view(text, dateLength), "9999-12-31T23:59:59Z");
}

}  // namespace
}  // namespace store
