// Host list files, and what becomes of their lines in a rule list.
#include <chrono>

#include "fuzz/Target.h"
#include "screens/settings/HostListText.h"
#include "store/rules/AppendedRules.h"
#include "store/text/Utf.h"

namespace fuzz {

namespace {

// A text's lines as XML can carry them.
std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines(1);
    for (const char* p = text.data(); p < text.data() + text.size();) {
        const store::Utf8Character next = store::decodeUtf8(p, text.data() + text.size());
        demand(next.length > 0, "the text is no UTF-8");
        demand(next.character != ' ', "there is a space left");
        if (next.character == '\n')
            lines.emplace_back();
        else if (store::isXmlCharacter(next.character))
            lines.back().append(p, next.length);
        else
            lines.back() += "\uFFFD";
        p += next.length;
    }
    return lines;
}

// The rules of a list to which a text was appended, as the file says them, and "-" for what is no entry.
std::vector<std::string> rulesWith(const std::string& list, const std::string& text) {
    store::Dictionary file = store::dictionaryOf("<dict>" + list + "</dict>");
    file.set("l", store::Value(std::make_shared<store::AppendedRules>(file.find("l"), text)));
    std::vector<std::string> rules;
    const store::Dictionary written = store::dictionaryOf(store::written(file));
    const store::Array elements = *written.find("l")->array();
    for (const store::Value& element : elements) {
        const auto entry = element.dictionary();
        rules.push_back(entry ? *entry->find("rule")->string() : "-");
        if (!entry || entry->contains("old")) continue;
        const auto age = std::chrono::system_clock::now() - entry->find("date")->date().value();
        demand(std::chrono::abs(age) < std::chrono::hours(1), "an entry is not of today");
    }
    return rules;
}

const std::string old = "<dict><key>old</key><true/><key>rule</key><string>&lt;/array></string></dict>";

// What may be there before, and the elements of it that stay.
const std::pair<std::string, std::vector<std::string>> lists[] = {
    {"", {}},
    {"<key>l</key><string>no list</string>", {}},
    {"<key>l</key><array/>", {}},
    {"<key>l</key><array>\n</array>", {}},
    {"<key>l</key><array a='>'>" + old + "</array >", {"</array>"}},
    {"<key>l</key><array>" + old + "<!-- </array> --> </array>", {"</array>"}},
    {"<key>l</key><array><array>" + old + "</array><string>x</string></array>", {"-", "-"}},
};

}  // namespace

bool accepts(std::string_view bytes) {
    const std::optional<std::string> text = screens::hostListText(bytes);
    if (!text) return false;
    const std::vector<std::string> lines = linesOf(*text);
    for (const auto& [list, before] : lists) {
        std::vector<std::string> rules = before;
        rules.insert(rules.end(), lines.begin(), lines.end());
        demand(rulesWith(list, *text) == rules, "the lines do not follow what was there");
    }
    return true;
}

}  // namespace fuzz
