#include "store/text/Bytes16.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "store/files/Buffer.h"
#include "store/plist/XmlText.h"
#include "store/text/Ascii.h"

namespace store {
namespace {

constexpr std::size_t registerSize = sizeof(Bytes16);
constexpr std::size_t longest = 2 * registerSize + 1;

bool isOther(char c) {
    return static_cast<signed char>(c) < ' ' || c == '<' || c == '&';
}

std::size_t firstOf(std::string_view text, bool (*isWanted)(char)) {
    return static_cast<std::size_t>(std::ranges::find_if(text, isWanted) - text.begin());
}

// Around the text stands what is looked for, which must not be found there.
TEST(Bytes16, FindsTheFirstByteInTextsOfAnyLength) {
    for (std::size_t size = 0; size <= longest; ++size) {
        for (std::size_t place = 0; place < std::max<std::size_t>(size, 1); ++place) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string text(size, 'x');
                if (size > 0) text[place] = static_cast<char>(byte);
                if (size > 3) text[size - 1 - place / 2] = '<';
                const std::string around = "<\xFF" + text + "\xFF<" + std::string(registerSize, '>');
                const std::string_view inside = std::string_view(around).substr(2, size);
                const auto where = [&] { return testing::Message() << size << " bytes, " << byte << " at " << place; };
                EXPECT_EQ(plainTextSize(inside), firstOf(inside, [](char c) { return isOther(c) || c == '>'; }))
                    << where();
                EXPECT_EQ(isAscii(inside), firstOf(inside, [](char c) { return (c & 0x80) != 0; }) == size) << where();
                const Buffer buffer = Buffer::copyOf(text);
                EXPECT_EQ(skipPlainText(buffer.bytes.get()) - buffer.bytes.get(), firstOf(text, isOther)) << where();
            }
        }
    }
}

}  // namespace
}  // namespace store
