// Our reader and writer beside those of two other makers: Python's plistlib and libplist.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Binary.h"
#include "Files.h"
#include "Values.h"
#include "support/RunProgram.h"

namespace store {
namespace {

using namespace std::string_literals;

using Opinion = std::optional<std::string>;  // what a file says, see peers.py; nothing when it is no dictionary

// Files in a folder, for the other makers to look at.
class Folder {
public:
    explicit Folder(const std::vector<std::string>& files) : count_(files.size()) {
        for (std::size_t i = 0; i < count_; ++i) put(file(i), files[i]);
    }

    std::filesystem::path file(std::size_t number, const std::string& suffix = "") const {
        return directory_ / (std::to_string(100'000 + number) + suffix);
    }

    // peers.py says a line for each file, in the order of their names.
    std::vector<Opinion> ask(const std::string& peer, const std::string& option = "") const {
        std::istringstream lines(
            testing_support::runProgram(PYTHON " " PEERS, peer + option + " '" + directory_.path().string() + "'")
                .output);
        std::vector<Opinion> opinions;
        for (std::string line; std::getline(lines, line);)
            opinions.push_back(line == "-" ? std::nullopt : Opinion(line));
        if (opinions.size() != count_) throw std::runtime_error(peer + " does not answer");
        return opinions;
    }

private:
    TemporaryDirectory directory_;
    std::size_t count_;
};

// What we read in files is what plistlib reads in them once we have written them anew.
std::vector<Opinion> ourOpinions(const std::vector<std::string>& files) {
    std::vector<std::string> anew;
    for (const std::string& file : files) {
        const ReadResult result = readText(file);
        const auto* dictionary = std::get_if<Dictionary>(&result);
        anew.push_back(dictionary ? canonical(*dictionary) : "");
    }
    return Folder(anew).ask("plistlib");
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
    const std::vector<Opinion> ours = ourOpinions({file});
    for (const char* peer : {"plistlib", "libplist"}) {
        const Folder folder({file});
        EXPECT_EQ(folder.ask(peer, " --write"), ours) << "they read something else";
        for (const char* suffix : {".xml", ".binary"})
            EXPECT_EQ(ourOpinions({contentOf(folder.file(0, suffix))}), ours) << "we read something else in " << suffix;
    }
}

// A list as people write it, with an element of every kind.
constexpr std::string_view declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
const std::string handMade = std::string(declaration) +
                             "\n<!DOCTYPE plist PUBLIC \"a\" \"b\">\n<plist version=\"1.0\">\n<dict>\n"
                             "<key>d</key><date>2013-05-04T17:03:09Z</date>\n<key>i</key><integer>-12</integer>"
                             "<key>r</key><real>1.5</real>\n<key>b</key><data>AAEC\nAw==</data><key>t</key><true/>"
                             "<key>l</key><array><string>a&amp;b</string><dict/><false/><!-- c -->"
                             "<string>x<![CDATA[<y>]]></string></array></dict>\n</plist>\n";

// What we refuse although both others take it: it could be read as something that was not meant.
bool isDeliberatelyRefused(const std::string& file) {
    const ReadError error = std::get<ReadError>(readText(file));
    switch (error.reason) {
        case ReadFailure::badDate:              // something behind the Z
        case ReadFailure::badData:              // letters that are no Base64, which they drop, and a lack of padding
        case ReadFailure::unsupportedEncoding:  // names that nobody has given to an encoding
        case ReadFailure::badInteger:           // of more than 64 bits, of which libplist keeps the lower ones
        case ReadFailure::badOffset:            // objects that reach into the table of objects
        case ReadFailure::unsupportedObject:    // references of an archiver, which XML does not have
            return true;
        case ReadFailure::misplacedText:  // behind the outermost dictionary
            return error.byte > file.rfind("</dict>");
        default:
            return false;
    }
}

// Where both others agree, we do. What only we read is for `isFine` to say.
void expectAgreement(const std::vector<std::string>& files, bool (*isFine)(const std::string& file)) {
    const Folder folder(files);
    const auto plistlib = folder.ask("plistlib");
    const auto libplist = folder.ask("libplist");
    const auto all = ourOpinions(files);
    for (std::size_t i = 0; i < files.size(); ++i) {
        const Opinion& ours = all[i];
        const std::string shown = testing::PrintToString(files[i]);
        if (ours && !plistlib[i] && !libplist[i]) {
            EXPECT_TRUE(isFine(files[i])) << "only we read " << shown;
        } else if (plistlib[i] && plistlib[i] == libplist[i] && ours != plistlib[i]) {
            if (!ours)
                EXPECT_TRUE(isDeliberatelyRefused(files[i])) << "only we do not read " << shown;
            else  // XML cannot carry every character
                EXPECT_NE(ours->find("efbfbd"), std::string::npos) << "we alone read " << *ours << " in " << shown;
        }
    }
}

TEST(Peers, AgreeOnEveryWrongCharacter) {
    std::vector<std::string> files;
    for (std::size_t at = 0; at < handMade.size(); ++at) {
        files.push_back(std::string(handMade).erase(at, 1));
        files.push_back(handMade.substr(0, at));
        for (const char c : "<>/&;x9\"\n-!=A\xC3\r\1"s) {
            files.push_back(std::string(handMade).replace(at, 1, 1, c));
            files.push_back(std::string(handMade).insert(at, 1, c));
        }
    }
    expectAgreement(files, [](const std::string& file) { return !file.starts_with(declaration); });
}

TEST(Peers, AgreeOnEveryWrongByte) {
    const std::string date = "\x33" + real(389379789);
    Binary list{{"\xD5\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A", ascii("a"), ascii("b"), ascii("c"), ascii("d"),
                 ascii("e"), date, "\x11\x12\x34", "\x23" + real(1.5), "\xA4\x0B\x0C\x0D\x0E", "\x63\0x\x4E\x2D\0y"s,
                 "\x09", "\x10\x07", "\xD1\x01\x0B", "\x44\0\1\2\3"s}};
    list.offsetSize = 1;
    const std::string binary = list.bytes();
    std::vector<std::string> files;
    for (std::size_t at = 8; at < binary.size(); ++at) {
        // A part of a second before 2001 counts as a second for us, as none for libplist.
        if (at > binary.find(date) && at < binary.find(date) + date.size()) continue;
        for (const int byte : {0x00, 0x01, 0x03, 0x08, 0x0D, 0x10, 0x13, 0x14, 0x22, 0x33,
                               0x41, 0x52, 0x5F, 0x61, 0x80, 0xA1, 0xC1, 0xD1, 0xDF, 0xFF})
            files.push_back(std::string(binary).replace(at, 1, 1, static_cast<char>(byte)));
    }
    expectAgreement(files, [](const std::string&) { return false; });
}

}  // namespace
}  // namespace store
