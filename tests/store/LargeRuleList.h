#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace store {

// A list so large that several threads read and write it: most entries are laid out as they are written, others are
// not, here and there.
struct LargeRuleList {
    static constexpr std::size_t count = 120'000;

    explicit LargeRuleList(std::mt19937& random) {
        for (std::size_t each = 0; each < count; ++each) {
            const char* ending = each % 50 == 7 ? ".\u0161k\u00F3da\u20AC\U0001F600" : ".example";
            std::string rule = std::to_string(each) + ending;
            std::string written = rule;
            std::string behind;
            const auto kind = random() % 4000;
            if (kind == 0) {
                rule += "&";
                written += "&amp;";
            } else if (kind == 1) {
                behind = "\t\t\t<key>own</key>\n\t\t\t<string>kept</string>\n";
            } else if (kind == 2) {
                behind = "\t\t<!--</dict>\n\t\t<dict>-->\n";
            } else if (kind == 3) {
                rule += std::string(100'000, 'x');
                written = rule;
            }
            rules.push_back(rule);
            std::string& entry = entries.emplace_back("\t\t<dict>\n\t\t\t<key>date</key>\n\t\t\t<date>");
            entry.append(yearOf(each)).append("-01-01T00:00:00Z</date>\n\t\t\t<key>rule</key>\n\t\t\t<string>");
            entry.append(written).append("</string>\n").append(behind).append("\t\t</dict>\n");
        }
    }

    static std::string yearOf(std::size_t each) { return std::to_string(2000 + each % 7); }

    std::string array(std::size_t begin, std::size_t end) const {
        std::string text = "<array>\n";
        for (std::size_t each = begin; each < end; ++each) text += entries[each];
        return text + "\t</array>";
    }

    std::vector<std::string> rules;
    std::vector<std::string> entries;  // as XML
};

}  // namespace store
