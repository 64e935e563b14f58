#include "store/rules/AppendedRules.h"

#include <chrono>
#include <utility>

#include "store/plist/XmlScanner.h"
#include "store/plist/XmlWriter.h"
#include "store/rules/RuleEntryWriter.h"

namespace store {

namespace {

Date now() {
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

// The text between the array's tags, without white space around it.
std::string_view elementsIn(const Slice& array) {
    XmlScanner scanner(array);
    if (scanner.next() != XmlScanner::Event::open) return {};
    const std::string_view inside(scanner.position(), static_cast<std::size_t>(array.end - scanner.position()));
    return trimmed(inside.substr(0, inside.rfind("</")));
}

}  // namespace

AppendedRules::AppendedRules(const Value* list, std::string lines) : lines_(std::move(lines)) {
    if (list && list->kind() == Kind::array) list_ = sliceOf(*list);
}

void AppendedRules::writeElements(XmlWriter& writer) const {
    if (const std::string_view held = list_ ? elementsIn(*list_) : std::string_view(); !held.empty()) writer.line(held);
    RuleEntryWriter entries(writer);
    for (std::string_view rest = lines_;;) {
        const std::size_t lineEnd = rest.find('\n');
        entries.write(rest.substr(0, lineEnd), now());
        if (lineEnd == std::string_view::npos) return;
        rest.remove_prefix(lineEnd + 1);
    }
}

}  // namespace store
