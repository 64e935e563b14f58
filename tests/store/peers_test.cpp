// Our reader and writer beside those of two other makers: Python's plistlib and libplist.
#include <gtest/gtest.h>

#include <bit>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "Binary.h"
#include "Files.h"
#include "Values.h"
#include "store/peers/Said.h"

namespace store {
namespace {

using namespace std::string_literals;

using Opinion = std::optional<std::string>;  // what a file says, see Said.h; nothing when it is no dictionary

Opinion ourOpinion(std::string_view bytes) {
    const ReadResult result = readText(bytes);
    const auto* dictionary = std::get_if<Dictionary>(&result);
    return dictionary ? Opinion(saidBy(Value(*dictionary))) : std::nullopt;
}

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
        const std::string command = PYTHON " " PEERS " " + peer + option + " '" + directory_.path().string() + "'";
        FILE* output = popen(command.c_str(), "r");
        if (!output) throw std::runtime_error("no process");
        std::vector<Opinion> opinions;
        std::string line;
        for (int c; (c = std::fgetc(output)) != EOF;) {
            if (c != '\n') {
                line.push_back(static_cast<char>(c));
                continue;
            }
            opinions.push_back(line == "-" ? std::nullopt : Opinion(line));
            line.clear();
        }
        if (pclose(output) != 0 || opinions.size() != count_) throw std::runtime_error(command + " does not answer");
        return opinions;
    }

private:
    TemporaryDirectory directory_;
    std::size_t count_;
};

// Values of all kinds by chance, as far as all makers have them: libplist's dates are 32 bits wide and its texts end
// at a 0.
class Chance {
public:
    Dictionary dictionary(int depth) {
        Dictionary entries;
        for (std::size_t count = upTo(6); count > 0; --count) entries.set(text(), value(depth));
        return entries;
    }

private:
    std::size_t upTo(std::size_t most) { return std::uniform_int_distribution<std::size_t>(0, most)(engine_); }

    Value value(int depth) {
        switch (upTo(depth > 0 ? 7 : 5)) {
            case 0:
                return Value(text());
            case 1:
                return Value(upTo(1) == 1);
            case 2:
                return Value(Date(std::chrono::seconds(static_cast<std::int64_t>(upTo(3'000'000'000)) - 900'000'000)));
            case 3:
                return Value(static_cast<std::int64_t>(engine_() >> upTo(63)));
            case 4:
                return Value(real());
            case 5:
                return Value(std::vector<std::byte>(upTo(70), static_cast<std::byte>(upTo(255))));
            case 6:
                return Value(dictionary(depth - 1));
            default:
                break;
        }
        Array array;
        for (std::size_t count = upTo(5); count > 0; --count) array.push_back(value(depth - 1));
        return Value(std::move(array));
    }

    double real() {
        const double real = std::bit_cast<double>(engine_());
        return std::isfinite(real) ? real : 0.1;
    }

    std::string text() {
        static const std::string pieces[] = {
            "rule",   "<",   ">",    "&", "\"", "'",      "]]>",    "&amp;",  " ",          "\t",   "\n", "\u00E9",
            "\u4E2D", "-->", "<!--", "a", "0",  "\u2028", "\uFFFD", "\uE000", "\U0001F600", "\x7F", "%s", "*."};
        std::string text = "k";
        for (std::size_t count = upTo(12); count > 0; --count) text += pieces[upTo(std::size(pieces) - 1)];
        return text + "k";
    }

    std::mt19937_64 engine_;
};

TEST(Peers, SayTheSame) {
    Chance chance;
    std::vector<std::string> files, said;
    for (int i = 0; i < 300; ++i) {
        files.push_back(written(chance.dictionary(3)));
        said.push_back(ourOpinion(files.back()).value());
    }
    for (const char* peer : {"plistlib", "libplist"}) {
        const Folder folder(files);
        const auto theirs = folder.ask(peer, " --write");
        for (std::size_t i = 0; i < files.size(); ++i) {
            EXPECT_EQ(theirs[i], said[i]) << "they read something else in\n" << files[i];
            for (const std::string& again : {contentOf(folder.file(i, ".xml")), contentOf(folder.file(i, ".binary"))})
                EXPECT_EQ(ourOpinion(again), said[i]) << "we read something else in\n" << again;
        }
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
    for (std::size_t i = 0; i < files.size(); ++i) {
        const Opinion ours = ourOpinion(files[i]);
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
    Binary list{{"\xD5\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A",
                 "\x51"
                 "a",
                 "\x51"
                 "b",
                 "\x51"
                 "c",
                 "\x51"
                 "d",
                 "\x51"
                 "e",
                 date, "\x11\x12\x34", "\x23" + real(1.5), "\xA4\x0B\x0C\x0D\x0E", "\x63\0x\x4E\x2D\0y"s, "\x09",
                 "\x10\x07", "\xD1\x01\x0B", "\x44\0\1\2\3"s}};
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
