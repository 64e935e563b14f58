// Published lists of hosts, and the program that turns them into lists to import.
#include <gtest/gtest.h>

#include "engine/list/HostList.h"
#include "store/Files.h"
#include "store/SharedFiles.h"
#include "support/RunProgram.h"

namespace engine {
namespace {

using enum Omission;

TEST(HostList, TakesWhatBlocksAHostAndSaysWhyNotTheRest) {
    using Omissions = std::map<Omission, std::size_t>;
    const std::tuple<std::string_view, std::string_view, Omissions> cases[] = {
        // Hosts files.
        {"0.0.0.0 ads.example", "ads.example", {}},
        {"127.0.0.1\ta.example  b.example # two\r", "a.example\nb.example", {}},
        {"::1 a.example#note", "a.example", {}},
        {":: A.Example.", "a.example", {}},
        {"0 a.example", "a.example", {}},
        {"127.0.0.53 a.example", "a.example", {}},
        {"192.0.2.7 printer.example", "", {{elsewhere, 1}}},
        {"127.0.0.1 localhost localhost.localdomain local\n::1 ip6-loopback\nfe80::1%lo0 localhost\n"
         "255.255.255.255 broadcasthost\n0.0.0.0 0.0.0.0",
         "",
         {{ownName, 7}}},
        {"0.0.0.0 bücher.example two_words.example", "xn--bcher-kva.example\ntwo_words.example", {}},
        {"0.0.0.0 https://a.example/ b..example", "", {{pattern, 1}, {noHost, 1}}},
        {"# a comment\n   \n; another\n#### heading ####\n##heading", "", {}},
        // Hosts, and the entries that lists have here already.
        {"a.example\nA.example \n\tb.example # why", "a.example\nb.example", {}},
        {"*a.example\n*.b.example\n.c.example", "*a.example\n*.b.example\n*c.example", {}},
        {"a.example:80\n[2001:DB8::7]:443\n2001:db8::7\n203.0.113.20",
         "a.example:80\n[2001:db8::7]:443\n2001:db8::7\n203.0.113.20",
         {}},
        {"localhost\n127.0.0.1\n*", "", {{ownName, 2}, {pattern, 1}}},
        {"https://a.example/x\n192.0.2.0/24\na.example b.example\na.example:0\n<html>",
         "",
         {{pattern, 2}, {noHost, 3}}},
        // dnsmasq.
        {"address=/a.example/b.example/0.0.0.0", "*a.example\n*b.example", {}},
        {"address=/a.example/\naddress=/b.example/#\naddress = /c.example/:: # why",
         "*a.example\n*b.example\n*c.example",
         {}},
        {"local=/a.example/\nserver=/b.example/\nserver=/*.c.example/", "*a.example\n*b.example\n*.c.example", {}},
        {"server=/a.example/192.0.2.1#5353\nserver=/b.example/#\naddress=/c.example/192.0.2.1", "", {{elsewhere, 3}}},
        {"address=/#/0.0.0.0\naddress=/*a.example/0.0.0.0\naddress=//0.0.0.0\ncache-size=9",
         "",
         {{pattern, 3}, {noHost, 1}}},
        {"address.example", "address.example", {}},
        // Adblock filters.
        {"[Adblock Plus 2.0]\n! a comment\n||ads.example^", "*ads.example", {}},
        {"||a.example\n||b.example^|\n||c.example/\n||*.d.example^\n||192.0.2.7^\n||e.example:80^",
         "*a.example\n*b.example\n*c.example\n*.d.example\n192.0.2.7\n*e.example:80",
         {}},
        {"||a.example^$third-party\n||b.example^$3p,important\n||c.example^$popup, document\n||d.example^$all",
         "*a.example\n*b.example\n*c.example\n*d.example",
         {}},
        {"||a.example^$script\n||b.example^$third-party,domain=c.example\n||d.example^$~third-party",
         "",
         {{option, 3}}},
        {"||a.example/ads/\n||a.example^*/x\n||a.example/x$script\n||a*.example^\n||a.\n|https://a.example/|\n"
         "/ad[0-9]/",
         "",
         {{pattern, 7}}},
        {"@@||a.example^\n##.ad\na.example##.ad\na.example,b.example#@#.ad\na.example#?#p:has(a)\n###ad",
         "",
         {{exception, 1}, {cosmetic, 5}}},
        {"!\n-banner.\n.ads.\nadvert\n_ads/\nplain.example\n0.0.0.0 a.example\nads now",
         "plain.example\na.example",
         {{pattern, 5}}},
        // Encodings.
        {"\xEF\xBB\xBF::1 a.example\r\n", "a.example", {}},
        {std::string_view("\xFF\xFE\x61\0.\0\xFC\0\n\0b\0", 12), "a.xn--tda\nb", {}},
        {std::string_view("\xFE\xFF\0a\0\r\0\n\0b", 10), "a\nb", {}},
        {std::string_view("a.ex\xFCmple\na\0b.example", 21), "", {{noHost, 2}}},
        {"", "", {}},
    };
    for (const auto& [lines, entries, omitted] : cases) {
        SCOPED_TRACE(lines);
        const auto list = readHostList(lines);
        ASSERT_TRUE(list);
        EXPECT_EQ(list->text, entries);
        Omissions found;
        for (std::size_t reason = 0; reason < omissionCount; ++reason)
            if (const auto count = list->omitted[reason].count) found[static_cast<Omission>(reason)] = count;
        EXPECT_EQ(found, omitted);
    }
    EXPECT_FALSE(readHostList("\xFF\xFE\x61"));
}

TEST(HostList, FindsRepeatedEntriesInALongList) {
    constexpr std::size_t count = 20'000;
    std::string hosts, again, expected;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string host = "h" + std::to_string(i) + ".example";
        hosts += "0.0.0.0 " + host + '\n';
        again.append(host).append("\n||").append(host).append("^\n");
        expected += host + '\n';
    }
    for (std::size_t i = 0; i < count; ++i) expected += "*h" + std::to_string(i) + ".example\n";
    expected.pop_back();
    const auto list = readHostList(hosts + again);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->text, expected);
    EXPECT_EQ(list->taken, 2 * count);
    EXPECT_EQ(list->repeated, count);
}

using testing_support::Outcome;

Outcome run(const std::string& arguments) {
    return testing_support::runProgram(VEXMOR_LIST, arguments);
}

TEST(ListProgram, PutsAListBesideTheOthers) {
    const store::TemporaryDirectory device;
    const std::filesystem::path folder = store::listFolder(device.path());
    const std::filesystem::path input = device / "input";
    store::put(input, "# ads\n0.0.0.0 a.example\n@@||x\n||b.example^\n0.0.0.0 a.example localhost\n@@||y\n");
    const std::string options = "--device " + device.path().string() + ' ';
    const Outcome taken = run("ads.txt " + options + "< " + input.string());
    EXPECT_EQ(taken.status, 0);
    EXPECT_EQ(taken.output,
              "2 taken, 1 repeated\n"
              "left out, exceptions: 2, first in line 3\n"
              "left out, the machine's own names: 1, first in line 5\n");
    EXPECT_EQ(store::contentOf(folder / "ads.txt"), "a.example\n*b.example");

    std::filesystem::create_directory(folder / "folder");
    store::put(device / "file", "");
    store::put(device / "utf16", "\xFF\xFEx");
    const std::tuple<std::string, int, std::string> cases[] = {
        {options + "ads.txt < /dev/null", 1, "there is no host in the input\n"},
        {options + "ads.txt < " + folder.string(), 1, "cannot read the input: Is a directory\n"},
        {options + "ads.txt < " + (device / "utf16").string(), 1, "the input is malformed UTF-16\n"},
        {options + "folder < " + input.string(), 1, "cannot write " + (folder / "folder").string() + ": "},
        {"--device " + (device / "file").string() + " ads.txt < " + input.string(), 1, "cannot write "},
        {options + "< /dev/null", 2, "usage: "},
        {options + "a b < /dev/null", 2, "usage: "},
        {options + ".hidden < /dev/null", 2, "usage: "},
        {options + "../a < /dev/null", 2, "usage: "},
        {options + "'' < /dev/null", 2, "usage: "},
        {"--devise . a < /dev/null", 2, "usage: "},
        {"a --device < /dev/null", 2, "usage: "},
    };
    for (const auto& [arguments, status, output] : cases) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, status) << arguments;
        EXPECT_TRUE(outcome.output.starts_with("vexmor-list: " + output)) << outcome.output;
        EXPECT_EQ(outcome.output.find('\n') + 1, outcome.output.size()) << outcome.output;
    }
    EXPECT_EQ(store::namesIn(folder), (std::set<std::string>{"ads.txt", "folder"}));
    EXPECT_EQ(store::contentOf(folder / "ads.txt"), "a.example\n*b.example");
}

}  // namespace
}  // namespace engine
