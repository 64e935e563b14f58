// The encodings of host list files. How a rule list grows by one is the fuzz target's matter.
#include <gtest/gtest.h>

#include "screens/settings/HostListText.h"

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

}  // namespace
