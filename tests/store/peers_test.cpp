// Our reader and writer beside those of two other makers: Python's plistlib and libplist.
#include <gtest/gtest.h>

#include <chrono>
#include <limits>

#include "Files.h"
#include "Values.h"
#include "support/RunProgram.h"

namespace store {
namespace {

// What a maker says of the file in a folder, see peers.py.
std::string said(const std::string& peer, const TemporaryDirectory& folder, const std::string& option = "") {
    return testing_support::runProgram(PYTHON " " PEERS, peer + option + " '" + folder.path().string() + "'").output;
}

// What we read in a file is what plistlib reads in it once we have written it anew.
std::string saidByUs(const std::string& file) {
    const TemporaryDirectory folder;
    put(folder / "file", canonical(dictionaryOf(file)));
    return said("plistlib", folder);
}

// Values of all kinds, as far as all makers have them: libplist's dates are 32 bits wide and its texts end at a 0.
Dictionary ofEveryKind() {
    Array values{Value(true), Value(false), Value(Array()), Value(Dictionary()), Value("")};
    Dictionary texts;
    const char* const pieces[] = {"rule", "<",      ">",      "&",      "\"",         "'",    "]]>",  "&amp;",
                                  " ",    "\t",     "\n",     "\u00E9", "\u4E2D",     "-->",  "<!--", "a",
                                  "0",    "\u2028", "\uFFFD", "\uE000", "\U0001F600", "\x7F", "%s",   "*."};
    for (const std::string first : pieces)
        for (const char* second : pieces) texts.set("k" + first + second + "k", Value("k" + first + second + "k"));
    values.push_back(Value(texts));
    for (const double real : {0.0, 0.1, -1.5, 1e22, 5e-324, -std::numeric_limits<double>::max()})
        values.push_back(Value(real));
    for (int shift = 0; shift < 64; ++shift) values.push_back(Value(std::numeric_limits<std::int64_t>::min() >> shift));
    for (const int seconds : {-900'000'000, -1, 0, 951'782'399, 2'000'000'000})
        values.push_back(Value(Date(std::chrono::seconds(seconds))));
    for (std::size_t size = 0; size < 200; ++size)
        values.push_back(Value(std::vector<std::byte>(size, static_cast<std::byte>(size))));
    Dictionary all = dictionaryHolding(Value(values));
    all.set("again", Value(Array{Value(all)}));
    return all;
}

TEST(Peers, SayTheSame) {
    const std::string file = written(ofEveryKind());
    const std::string ours = saidByUs(file);
    ASSERT_GT(ours.size(), file.size() / 2) << ours;
    for (const char* peer : {"plistlib", "libplist"}) {
        const TemporaryDirectory folder;
        put(folder / "file", file);
        EXPECT_EQ(said(peer, folder, " --write"), ours) << "they read something else";
        for (const char* name : {"file.xml", "file.binary"})
            EXPECT_EQ(saidByUs(contentOf(folder / name)), ours) << "we read something else in " << name;
    }
}

}  // namespace
}  // namespace store
