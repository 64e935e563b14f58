#include "store/rules/RuleList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "LargeRuleList.h"
#include "Values.h"
#include "store/plist/Scalars.h"
#include "store/sorting/Ordering.h"
#include "store/text/Search.h"

namespace store {
namespace {

Date at(int seconds) {
    return Date(std::chrono::seconds(seconds));
}

std::string entry(std::string_view rule, std::string_view rest = "") {
    return "<dict><key>rule</key><string>" + std::string(rule) + "</string>" + std::string(rest) + "</dict>";
}

std::string dated(std::string_view rule, std::string_view date) {
    return entry(rule, "<key>date</key><date>" + std::string(date) + "</date>");
}

Value arrayOf(const std::string& elements) {
    return *dictionaryOf(holdingXml("<array>" + elements + "</array>")).find("a");
}

RuleList listOf(const std::string& elements) {
    Value array = arrayOf(elements);
    return RuleList::load(&array);
}

std::string rulesOf(const RuleList& list) {
    std::string rules;
    for (std::size_t i = 0; i < list.size(); ++i) rules += std::string(list.rule(i)) + " ";
    return rules;
}

std::string storedOf(const RuleList& list) {
    return canonical(dictionaryOf(written(dictionaryHolding(list.value()))));
}

std::string storedOf(const std::string& elements) {
    return canonical(dictionaryHolding(arrayOf(elements)));
}

TEST(RuleList, KeepsTheFirstOfEqualRules) {
    RuleList list = listOf(dated("b", "2001-01-01T00:00:00Z") + entry("B") + entry("a") + entry("b") + entry("&#98;") +
                           entry("<![CDATA[a]]>") + entry("a&amp;b") + "<dict/><dict/>" + entry(""));
    EXPECT_EQ(rulesOf(list), "b B a a&b    ");
    EXPECT_EQ(list.date(0), at(978307200));
    EXPECT_FALSE(list.date(1));
}

TEST(RuleList, LoadsBuiltArraysAndItsOwn) {
    Dictionary built;
    built.set("rule", Value("a<b"));
    built.set("date", Value(at(-1)));
    Value array(Array{Value(built), Value(built)});
    RuleList list = RuleList::load(&array);
    ASSERT_EQ(rulesOf(list), "a<b ");
    EXPECT_EQ(list.date(0), at(-1));
    Value own = list.value();
    EXPECT_EQ(rulesOf(RuleList::load(&own)), "a<b ");
}

// What an entry holds beyond a rule and a date, and what is wrong with it, stays until somebody edits it.
TEST(RuleList, WritesBackWhatItDoesNotKnow) {
    const std::string odd[] = {
        entry("noDate"),
        entry("extra", "<key>mine</key><array><true/></array>"),
        entry("numberForDate", "<key>date</key><integer>1</integer>"),
        "<dict><key>rule</key><integer>1</integer><key>date</key><date>2001-01-01T00:00:00Z</date></dict>",
        "<dict/>",
        "<dict><key>date</key><date>2001-01-01T00:00:00Z</date></dict>",
        "<dict><key/><true/></dict>",
    };
    std::string all;
    for (const std::string& element : odd) all += element;
    // An entry that repeats a rule goes with what it holds, and the others keep theirs.
    RuleList list = listOf(odd[0] + odd[1] + all.substr(odd[0].size()));
    EXPECT_EQ(rulesOf(list), "noDate extra numberForDate     ");
    EXPECT_EQ(storedOf(list), storedOf(all));

    list.replace(1, "edited", at(0));
    list.replace(3, "repaired", at(0));
    EXPECT_EQ(storedOf(list), storedOf(odd[0] + dated("edited", "1970-01-01T00:00:00Z") + odd[2] +
                                       dated("repaired", "1970-01-01T00:00:00Z") + odd[4] + odd[5] + odd[6]));
}

TEST(RuleList, CarriesElementsThatAreNoEntriesBehindTheOthers) {
    RuleList list = listOf("<string>x</string>" + entry("a") + "<array><dict/></array>" + entry("b"));
    EXPECT_EQ(rulesOf(list), "a b ");
    list.remove(0);
    EXPECT_EQ(storedOf(list), storedOf(entry("b") + "<string>x</string><array><dict/></array>"));
    list.clear();
    EXPECT_EQ(storedOf(list), storedOf(""));
}

TEST(RuleList, ReadsAndWritesALargeListInOrder) {
    std::mt19937 random(11);
    const LargeRuleList large(random);
    Value array = *dictionaryOf(holdingXml(large.array(0, large.rules.size()))).find("a");
    for (const char* what : {"read", "written and read"}) {
        const RuleList list = RuleList::load(&array);
        ASSERT_EQ(list.size(), large.rules.size()) << what;
        for (std::size_t each = 0; each < list.size(); ++each) {
            ASSERT_EQ(list.rule(each), large.rules[each]) << what;
            ASSERT_EQ(list.date(each), parseDate(large.yearOf(each) + "-01-01T00:00:00Z")) << what;
        }
        array = *dictionaryOf(written(dictionaryHolding(list.value()))).find("a");
    }
}

TEST(RuleList, SortsByNameOrDate) {
    NameOrder order("en_US");
    RuleList list =
        listOf(dated("beta", "2001-01-01T10:00:00Z") + entry("Alpha") + dated("alpha", "2001-01-01T11:00:00Z") +
               entry("gamma") + dated("delta", "2001-01-01T10:00:00Z"));
    list.sort(RuleOrder::name, order);
    EXPECT_EQ(rulesOf(list), "Alpha alpha beta delta gamma ");
    list.sort(RuleOrder::date, order);
    EXPECT_EQ(rulesOf(list), "alpha beta delta Alpha gamma ");
}

// Beside a plain list of these, through the same thousands of changes.
struct Plain {
    std::string rule;
    Date date;
    int changed;

    bool operator==(const Plain& other) const { return rule == other.rule && date == other.date; }
};

struct RuleListInLocale : testing::TestWithParam<const char*> {
    std::size_t pick(std::size_t limit) { return static_cast<std::size_t>(random_() % limit); }

    std::string text(std::size_t longest) {
        static const char* const pieces[] = {"a", "A", "b", "ch", "lj",     "\u00E9", "e\u0301",
                                             "*", ".", "<", "z",  "\u0130", "1"};
        std::string made;
        for (std::size_t i = pick(longest + 1); i > 0; --i) made += pieces[pick(std::size(pieces))];
        return made;
    }

    void sortPlain(RuleOrder by) {
        std::stable_sort(plain.begin(), plain.end(), [&](const Plain& a, const Plain& b) {
            return by == RuleOrder::date ? std::tie(a.date, a.changed) > std::tie(b.date, b.changed)
                                         : order.compare(a.rule, b.rule) < 0;
        });
    }

    void expectFound(const std::string& typed) {
        LargeVector<std::uint32_t> rows;
        for (std::uint32_t i = 0; i < plain.size(); ++i)
            if (SearchText(typed).matches(plain[i].rule)) rows.push_back(i);
        ASSERT_EQ(list.search(typed), rows);
    }

    const NameOrder order{GetParam()};
    RuleList list;
    std::vector<Plain> plain;

private:
    std::mt19937 random_{4711};
};

TEST_P(RuleListInLocale, DoesWhatAPlainListDoes) {
    for (int step = 0; step < 3000; ++step) {
        const RuleOrder by = pick(2) ? RuleOrder::name : RuleOrder::date;
        const Plain made{text(5), at(static_cast<int>(pick(5))), step};
        const std::size_t size = plain.size();
        const std::size_t position = size ? pick(size) : 0;
        const std::size_t kind = size ? pick(9) : 0;
        if (kind < 3) {
            plain.push_back(made);
            sortPlain(by);
            ASSERT_EQ(plain[list.add(made.rule, made.date, by, order)], made);
        } else if (kind == 3) {
            plain[position] = made;
            list.replace(position, made.rule, made.date);
        } else if (kind == 4) {
            plain.erase(plain.begin() + static_cast<std::ptrdiff_t>(position));
            list.remove(position);
        } else if (kind == 5) {
            std::erase(plain, Plain(plain[position]));
            ASSERT_EQ(list.removeEqual(position).size(), size - plain.size());
        } else if (kind == 6) {
            sortPlain(by);
            list.sort(by, order);
        } else {
            const std::string typed = text(2);
            expectFound(typed);
            expectFound(typed + text(1));
        }
        ASSERT_EQ(list.size(), plain.size()) << step;
        for (std::size_t i = 0; i < list.size(); ++i)
            ASSERT_EQ((Plain{std::string(list.rule(i)), *list.date(i), 0}), plain[i]) << step << ": " << i;
    }
    const Value stored = list.value();
    std::string first;
    std::set<std::string> rules;
    for (const Plain& each : plain)
        if (rules.insert(each.rule).second) first += each.rule + " ";
    EXPECT_EQ(rulesOf(RuleList::load(&stored)), first);
}

INSTANTIATE_TEST_SUITE_P(Locales, RuleListInLocale, testing::Values("", "de_DE", "cs_CZ", "hr_HR", "th_TH", "da_DK"));

}  // namespace
}  // namespace store
