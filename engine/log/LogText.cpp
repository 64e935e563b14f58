#include "engine/log/LogText.h"

#include <algorithm>
#include <ctime>

#include "store/text/IcuText.h"

namespace engine {

namespace {

constexpr std::size_t longestHeading = 64;

std::u16string formatted(const char* format, const std::tm& time) {
    char text[longestHeading] = "";
    return store::utf16({text, std::strftime(text, sizeof text, format, &time)});
}

// What is not to break a line, or to overwrite it where it is printed, is left out.
bool isControl(char16_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029;
}

std::u16string inOneLine(const std::string& text) {
    std::u16string line = store::utf16(text);
    std::erase_if(line, isControl);
    return line;
}

std::string endOf(const LogLine& line) {
    if (line.port == 0) return line.host;
    const bool isIPv6 = line.host.find(':') != std::string::npos;
    return (isIPv6 ? '[' + line.host + ']' : line.host) + ':' + std::to_string(line.port);
}

// Lines of connections begin with a time.
bool isHeading(std::u16string_view line) {
    return !line.empty() && line.size() <= longestHeading && !(line.front() >= u'0' && line.front() <= u'9');
}

// The last heading in a text of whole lines, with its line feed.
std::u16string_view lastHeading(std::u16string_view text) {
    while (!text.empty()) {
        const std::size_t before = text.find_last_of(u'\n', text.size() - 2);
        const std::size_t begin = before == text.npos || text.size() < 2 ? 0 : before + 1;
        if (isHeading(text.substr(begin))) return text.substr(begin);
        text = text.substr(0, begin);
    }
    return {};
}

}  // namespace

std::u16string logText(const std::vector<LogLine>& lines, std::u16string& day) {
    std::u16string text;
    for (const LogLine& line : lines) {
        const std::time_t seconds = std::chrono::system_clock::to_time_t(line.time);
        std::tm time{};
        localtime_r(&seconds, &time);
        if (std::u16string heading = formatted("%A, %-d %B %Y\n", time); heading != day) {
            text += heading;
            day = std::move(heading);
        }
        text += formatted("%H:%M:%S ", time) + inOneLine(line.app) + u" → " + inOneLine(endOf(line)) +
                (line.isAllowed ? u"\n" : u" denied\n");
    }
    return text;
}

std::u16string newestLines(std::u16string_view text, std::size_t largest) {
    const std::size_t room = largest - std::min(largest, longestHeading);
    std::size_t begin = 0;
    if (text.size() > room) {
        // The line feed in front of what fits ends a line that does not.
        const std::size_t end = text.find(u'\n', text.size() - room - 1);
        begin = end == text.npos ? text.size() : end + 1;
    }
    const std::u16string_view kept = text.substr(begin);
    std::u16string newest;
    if (!isHeading(kept.substr(0, kept.find(u'\n')))) newest = lastHeading(text.substr(0, begin));
    return newest.append(kept);
}

}  // namespace engine
