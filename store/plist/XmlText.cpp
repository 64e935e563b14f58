#include "store/plist/XmlText.h"

#include <algorithm>

namespace store {

namespace {

constexpr std::string_view commentBegin = "<!--", commentEnd = "-->";
constexpr std::string_view sectionBegin = "<![CDATA[", sectionEnd = "]]>";
constexpr std::string_view instructionBegin = "<?", instructionEnd = "?>";

int digitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return 16;
}

XmlReference readCharacterReference(const char* p, const char* end) {
    bool isHex = p < end && *p == 'x';
    if (isHex) ++p;
    int base = isHex ? 16 : 10;
    const char* digits = p;
    char32_t character = 0;
    for (; p < end && digitValue(*p) < base; ++p)
        character = std::min<char32_t>(character * static_cast<char32_t>(base) + static_cast<char32_t>(digitValue(*p)),
                                       0x110000);
    if (p == digits || p == end || *p != ';') return {};
    return {character, p + 1};
}

}  // namespace

XmlReference readReference(const char* p, const char* end) {
    ++p;
    if (p < end && *p == '#') return readCharacterReference(p + 1, end);
    struct Entity {
        std::string_view name;
        char32_t character;
    };
    static constexpr Entity entities[] = {{"lt;", '<'}, {"gt;", '>'}, {"amp;", '&'}, {"quot;", '"'}, {"apos;", '\''}};
    std::string_view rest(p, static_cast<std::size_t>(end - p));
    for (const Entity& entity : entities)
        if (rest.starts_with(entity.name)) return {entity.character, p + entity.name.size()};
    return {};
}

std::string XmlText::decoded() const {
    if (isPlain) return std::string(raw);
    std::string text;
    std::string_view rest = raw;
    auto takeThrough = [&](std::string_view terminator, std::size_t from) {
        std::size_t at = rest.find(terminator, from);
        std::string_view inside = rest.substr(from, at - from);
        rest.remove_prefix(at + terminator.size());
        return inside;
    };
    while (!rest.empty()) {
        std::size_t run = std::min(rest.find_first_of("<&"), rest.size());
        text.append(rest.substr(0, run));
        rest.remove_prefix(run);
        if (rest.empty()) break;
        if (rest.front() == '&') {
            XmlReference reference = readReference(rest.data(), rest.data() + rest.size());
            appendUtf8(text, reference.character);
            rest.remove_prefix(static_cast<std::size_t>(reference.end - rest.data()));
        } else if (rest.starts_with(sectionBegin)) {
            text.append(takeThrough(sectionEnd, sectionBegin.size()));
        } else if (rest.starts_with(commentBegin)) {
            takeThrough(commentEnd, commentBegin.size());
        } else {
            takeThrough(instructionEnd, instructionBegin.size());
        }
    }
    return text;
}

}  // namespace store
