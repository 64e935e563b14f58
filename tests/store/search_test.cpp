#include "store/Search.h"

#include <gtest/gtest.h>

#include <string>

#include "store/SearchBlock.h"

namespace store {
namespace {

TEST(Search, MatchesWithoutRegardToCase) {
    struct Row {
        const char* text;
        const char* field;
        bool matches;
    };
    const Row table[] = {
        {"MAIL", "Webmail", true},
        {"mail", "MAIL", true},
        {"exa", "static.example.net", true},
        {"*ex", "*example.net", true},
        {"*ex", "example.net", false},
        {":80", "a.example:80", true},
        {"", "anything", false},
        {"", "", false},
        {"a", "", false},
        {"\u00C4", "b\u00E4r", true},
        {"\u0391\u0392", "x\u03B1\u03B2", true},
        // One spelling with a mark of its own, one without.
        {"caf\u00E9", "CAFE\u0301.example", true},
        {"e\u0301", "\u00C9", true},
        // Lower-casing changes the length: of the Kelvin sign, of a capital I with a dot.
        {"k", "\u212A", true},
        {"\u0130", "xi\u0307", true},
        {"\u1E9E", "\u00DF", true},
        {"ss", "\u00DF", false},
        {"\U00010400", "\U00010428", true},
    };
    for (const Row& row : table) {
        EXPECT_EQ(SearchText(row.text).matches(row.field), row.matches) << row.text << " in " << row.field;
        SearchBlock block(1, 0, [&](std::size_t) { return row.field; });
        EXPECT_EQ(block.search(row.text).size(), row.matches) << row.text << " in " << row.field;
    }
}

TEST(Search, LowersTextOfAnyLength) {
    std::string dotted, lowered;
    for (int i = 0; i < 1000; ++i) {
        dotted += "\u0130A";
        lowered += "i\u0307a";
    }
    EXPECT_EQ(lowercase(dotted), lowered);
    EXPECT_EQ(lowercase("A\xFF"), "a\uFFFD");
    EXPECT_EQ(lowercase(""), "");

    std::string ascii, plainlyLowered;
    for (char c = 1; c != '\x7F'; ++c) {
        ascii.push_back(c);
        plainlyLowered.push_back(c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c);
        EXPECT_EQ(loweredForSearch(ascii), plainlyLowered);
    }
}

TEST(Search, KeepsTextsApart) {
    const std::string fields[] = {"ab", "cd", "", "abcd"};
    SearchBlock block(4, 0, [&](std::size_t row) -> std::string_view { return fields[row]; });
    EXPECT_EQ(block.search("bc"), std::vector<std::uint32_t>{3});
    EXPECT_EQ(block.search("b"), (std::vector<std::uint32_t>{0, 3}));
    EXPECT_EQ(block.search("ba"), std::vector<std::uint32_t>());
    EXPECT_EQ(block.search("cd"), (std::vector<std::uint32_t>{1, 3}));
    EXPECT_EQ(block.search("\xFF").size(), 0u);
}

}  // namespace
}  // namespace store
