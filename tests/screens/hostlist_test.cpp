// Host list files: their encodings, and how a rule list grows by one.
#include <gtest/gtest.h>

#include <chrono>
#include <string_view>

#include "screens/settings/HostListText.h"
#include "store/Schema.h"
#include "store/files/BufferSink.h"
#include "store/plist/PropertyListReader.h"
#include "store/plist/XmlWriter.h"
#include "store/rules/AppendedRules.h"

namespace {

using namespace std::string_view_literals;

// What is rejected stands in the corpus of the fuzzer.
TEST(HostListText, IsDecodedByMarkThenByValidity) {
    const std::pair<std::string_view, std::string> cases[] = {
        {"", ""},
        {"a.example\nb.example\n", "a.example\nb.example\n"},
        {" ads .example .net \r\n\tx", "ads.example.net\r\n\tx"},
        {"m\xC3\xBC.example", "mü.example"},
        {"\xEF\xBB\xBFm\xC3\xBC", "mü"},
        {"\xFF\xFEm\0\xFC\0 \0"sv, "mü"},
        {"\xFE\xFF\0m\0\xFC"sv, "mü"},
        {"\xFF\xFE\x3D\xD8\x00\xDE"sv, "\U0001F600"},
        {"\xFF\xFE\0\0m\0\0\0\x00\xF6\x01\0"sv, "m\U0001F600"},
        {"\0\0\xFE\xFF\0\0\0m"sv, "m"},
        {"m\xFC.example \x80\x9F", "mü.example€Ÿ"},
        {"twelve bytes m\xC3", "twelvebytesmÃ"},
        {"\x81", "\xC2\x81"},
    };
    for (const auto& [bytes, text] : cases) EXPECT_EQ(screens::hostListText(bytes), text) << bytes;
}

// The rules of a list after lines were appended, read back from what was written; "-" for what is no entry.
std::vector<std::string> appended(const std::string& list, const std::string& lines) {
    const auto read = [](std::string_view text) {
        return std::get<store::Dictionary>(store::readPropertyList(store::Buffer::copyOf(text)));
    };
    store::Dictionary file;
    if (!list.empty()) file = read("<dict><key>l</key>" + list + "</dict>");
    file.set("l", store::Value(std::make_shared<store::AppendedRules>(file.find("l"), lines)));
    store::BufferSink sink;
    store::XmlWriter(sink).document(file);

    std::vector<std::string> rules;
    const auto elements = read(sink.take().view()).find("l")->array();
    for (const store::Value& element : *elements) {
        const auto entry = element.dictionary();
        const store::Value* rule = entry ? entry->find(store::keys::rule) : nullptr;
        rules.push_back(rule ? rule->string().value_or("?") : "-");
        if (!entry || entry->contains("old")) continue;
        const auto age = std::chrono::system_clock::now() - entry->find(store::keys::date)->date().value();
        EXPECT_LT(std::chrono::abs(age), std::chrono::minutes(1));
    }
    return rules;
}

TEST(AppendedRules, FollowWhatWasThere) {
    const std::string old = "<dict><key>old</key><true/><key>rule</key><string>&lt;/array></string></dict>";
    const struct {
        std::string list;
        std::string lines;
        std::vector<std::string> rules;
    } cases[] = {
        {"", "alpha.example\nbeta.example\n", {"alpha.example", "beta.example", ""}},
        {"", "", {""}},
        {"<array/>", "a", {"a"}},
        {"<array>\n</array>", "a\n\nb", {"a", "", "b"}},
        {"<array a='>'>" + old + "</array >", "a\r\nb", {"</array>", "a\r", "b"}},
        {"<array>" + old + "<!-- </array> --> </array>", "a", {"</array>", "a"}},
        {"<array><array>" + old + "</array><string>x</string></array>", "a&b<c", {"-", "-", "a&b<c"}},
        {"<string>no list</string>", "a", {"a"}},
    };
    for (const auto& each : cases) EXPECT_EQ(appended(each.list, each.lines), each.rules) << each.list;
}

}  // namespace
