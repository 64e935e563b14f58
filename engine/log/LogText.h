#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/log/EngineLog.h"

namespace engine {

// The log's text, without its byte-order mark. Any thread.

// The lines, each day's under its heading. `day` is the heading that they follow, empty where there is none, and
// becomes the last one's.
std::u16string logText(const std::vector<LogLine>& lines, std::u16string& day);

// The last lines of a text that take at most `largest` units with the heading of their day, which is repeated.
std::u16string newestLines(std::u16string_view text, std::size_t largest);

}  // namespace engine
