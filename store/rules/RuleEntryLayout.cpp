#include "store/rules/RuleEntryLayout.h"

#include <array>
#include <cstring>
#include <optional>
#include <utility>

#include "store/files/Buffer.h"
#include "store/plist/Scalars.h"
#include "store/plist/XmlText.h"
#include "store/rules/RuleEntryKeys.h"
#include "store/text/Utf.h"

namespace store {

namespace {

// The deepest entries: those of an app's list in an exported file.
constexpr std::size_t mostTabs = 4;
constexpr std::string_view tag = "<dict>";

bool startsWith(const char* p, const std::string& text) {
    return std::memcmp(p, text.data(), text.size()) == 0;
}

std::string keyLine(const std::string& tabs, std::string_view key) {
    return "\n" + tabs + "\t<key>" + std::string(key) + "</key>\n" + tabs + "\t";
}

}  // namespace

RuleEntryLayout::RuleEntryLayout(std::size_t tabs) : tabs_(tabs) {
    std::string indentation(tabs, '\t');
    beforeDate_ = std::string(tag) + keyLine(indentation, keys::date) + "<date>";
    beforeRule_ = "</date>" + keyLine(indentation, keys::rule) + "<string>";
    end_ = "</string>\n" + indentation + "</dict>";
}

namespace {

// skipPlainText() that also skips characters outside ASCII.
const char* skipPlainCharacters(const char* p) {
    constexpr std::ptrdiff_t longest = 4;
    for (p = skipPlainText(p); static_cast<signed char>(*p) < 0; p = skipPlainText(p)) {
        const Utf8Character character = decodeUtf8(p, p + longest);
        if (character.length == 0 || !isXmlCharacter(character.character)) return p;
        p += character.length;
    }
    return p;
}

std::size_t tabsBefore(const char* dict) {
    std::size_t tabs = 0;
    while (tabs <= mostTabs && dict[-1 - static_cast<std::ptrdiff_t>(tabs)] == '\t') ++tabs;
    return tabs;
}

}  // namespace

// A comparison fails at the 0 behind the text at the latest, and none reads beyond the padding.
RuleEntryLayout::Match RuleEntryLayout::match(const char* dict) const {
    if (!startsWith(dict, beforeDate_)) return {};
    const char* dateText = dict + beforeDate_.size();
    if (!startsWith(dateText + dateLength, beforeRule_)) return {};
    const char* rule = dateText + dateLength + beforeRule_.size();
    const char* ruleEnd = skipPlainCharacters(rule);
    if (!startsWith(ruleEnd, end_)) return {};
    std::optional<Date> date = parseDate({dateText, dateLength});
    if (!date) return {};
    return {*date, {rule, static_cast<std::size_t>(ruleEnd - rule)}, ruleEnd + end_.size()};
}

RuleEntryLayout::Match RuleEntryLayout::matchAt(const char* dict) {
    return tabsBefore(dict) <= mostTabs ? of(dict).match(dict) : Match();
}

const RuleEntryLayout& RuleEntryLayout::of(const char* dict) {
    static const auto layouts = []<std::size_t... tabs>(std::index_sequence<tabs...>) {
        return std::array{RuleEntryLayout(tabs)...};
    }
    (std::make_index_sequence<mostTabs + 1>());
    return layouts.at(tabsBefore(dict));
}

RuleEntryLayout::Texts RuleEntryLayout::textsOf(const char* dict, const char* end) const {
    const char* date = dict + beforeDate_.size();
    const char* rule = date + dateLength + beforeRule_.size();
    const std::string_view rest(rule, static_cast<std::size_t>(end - rule));
    const std::size_t size = rest.find('<');
    return {{date, dateLength}, rest.substr(0, size), rule + size + end_.size() + 1 + tabs_};
}

const char* RuleEntryLayout::nextEntry(const char* dict, const char* behind) {
    const std::size_t tabs = tabsBefore(dict);
    if (*behind != '\n' || std::memcmp(behind + 1, dict - tabs, tabs + tag.size()) != 0) return nullptr;
    return behind + 1 + tabs;
}

}  // namespace store
