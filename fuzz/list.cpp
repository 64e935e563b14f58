// Published lists: what becomes an entry, and that it stays one. Accepted is what has an entry.
#include <algorithm>

#include "engine/HostPattern.h"
#include "engine/list/HostList.h"
#include "fuzz/Target.h"

namespace fuzz {

namespace {

void demandPatterns(std::string_view text, std::size_t count) {
    std::size_t found = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        demand(engine::HostPattern::parse(text.substr(0, end)).has_value(), "an entry matches nothing");
        text.remove_prefix(std::min(end + 1, text.size()));
        ++found;
    }
    demand(found == count, "the entries are not as many as were counted");
}

// A list of entries is a list as well, which says the same.
void demandStable(const engine::HostList& list) {
    const auto again = engine::readHostList(list.text);
    demand(again && again->text == list.text, "the entries become others");
    demand(again->taken == list.taken && again->repeated == 0, "an entry is repeated");
}

}  // namespace

bool accepts(std::string_view bytes) {
    constexpr std::size_t mostGrowth = 8;
    const auto list = engine::readHostList(bytes);
    if (!list) return false;
    demand(list->text.size() <= mostGrowth * bytes.size(), "the list is much larger than what was read");
    const auto lines = static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n')) + 1;
    for (const auto& omitted : list->omitted) {
        demand((omitted.count == 0) == (omitted.firstLine == 0), "something was left out in no line");
        demand(omitted.firstLine <= lines, "something was left out behind the last line");
    }
    demandPatterns(list->text, list->taken);
    demandStable(*list);
    return list->taken > 0;
}

}  // namespace fuzz
