// Host list files, and what becomes of their lines in a rule list.
#include <memory>
#include <vector>

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

// The rules of a list to which a text was appended, as the file says them.
std::vector<std::string> rulesWith(const std::string& list, const std::string& text) {
    store::Dictionary file = store::dictionaryOf("<dict>" + list + "</dict>");
    file.set("l", store::Value(std::make_shared<store::AppendedRules>(file.find("l"), text)));
    std::vector<std::string> rules;
    const store::Dictionary written = store::dictionaryOf(store::written(file));
    const store::Array entries = *written.find("l")->array();
    for (const store::Value& entry : entries) rules.push_back(*entry.dictionary()->find("rule")->string());
    return rules;
}

}  // namespace

bool accepts(std::string_view bytes) {
    const std::optional<std::string> text = screens::hostListText(bytes);
    if (!text) return false;
    std::vector<std::string> rules = linesOf(*text);
    demand(rulesWith("", *text) == rules, "the lines are not the rules");
    rules.insert(rules.begin(), "old");
    const std::string old = "<key>l</key><array><dict><key>rule</key><string>old</string></dict></array>";
    demand(rulesWith(old, *text) == rules, "the lines do not follow what was there");
    return true;
}

}  // namespace fuzz
