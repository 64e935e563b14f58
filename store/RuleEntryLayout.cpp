#include "store/RuleEntryLayout.h"

#include <array>
#include <cstring>
#include <optional>
#include <utility>

#include "store/Buffer.h"
#include "store/Scalars.h"
#include "store/Schema.h"
#include "store/XmlText.h"

namespace store {

namespace {

// Entries of an app's list that lie in an exported file are the deepest there are.
constexpr std::size_t mostTabs = 4;

bool startsWith(const char* p, const std::string& text) {
    return std::memcmp(p, text.data(), text.size()) == 0;
}

std::string keyLine(const std::string& tabs, std::string_view key) {
    return "\n" + tabs + "\t<key>" + std::string(key) + "</key>\n" + tabs + "\t";
}

}  // namespace

RuleEntryLayout::RuleEntryLayout(std::size_t tabs) {
    std::string indentation(tabs, '\t');
    beforeDate_ = "<dict>" + keyLine(indentation, keys::date) + "<date>";
    beforeRule_ = "</date>" + keyLine(indentation, keys::rule) + "<string>";
    end_ = "</string>\n" + indentation + "</dict>";
}

// Whatever does not match does so at the latest at the 0 behind the text, and nothing is looked at beyond the padding.
RuleEntryLayout::Match RuleEntryLayout::match(const char* dict) const {
    if (!startsWith(dict, beforeDate_)) return {};
    const char* dateText = dict + beforeDate_.size();
    if (!startsWith(dateText + dateLength, beforeRule_)) return {};
    const char* rule = dateText + dateLength + beforeRule_.size();
    const char* ruleEnd = skipPlainText(rule);
    if (!startsWith(ruleEnd, end_)) return {};
    std::optional<Date> date = parseDate({dateText, dateLength});
    if (!date) return {};
    return {*date, {rule, static_cast<std::size_t>(ruleEnd - rule)}, ruleEnd + end_.size()};
}

RuleEntryLayout::Match RuleEntryLayout::matchAt(const char* dict) {
    static const auto layouts = []<std::size_t... tabs>(std::index_sequence<tabs...>) {
        return std::array{RuleEntryLayout(tabs)...};
    }
    (std::make_index_sequence<mostTabs + 1>());
    std::size_t tabs = 0;
    while (tabs <= mostTabs && dict[-1 - static_cast<std::ptrdiff_t>(tabs)] == '\t') ++tabs;
    return tabs <= mostTabs ? layouts[tabs].match(dict) : Match();
}

}  // namespace store
