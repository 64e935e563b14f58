#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

#include "store/plist/PropertyList.h"
#include "store/plist/ReadFailure.h"
#include "store/plist/XmlText.h"

namespace store {

enum class Tag : std::uint8_t { plist, dict, array, key, string, yes, no, date, data, integer, real };

inline bool isContainer(Tag tag) {
    return tag == Tag::dict || tag == Tag::array;
}
Kind kindOf(Tag tag);

// A pull scanner for the XML of property lists. It validates characters and markup; the caller validates nesting. It
// has no stack, so nesting costs no memory. Scanning a slice, which was validated before, never fails.
//
// The text must lie in a Buffer: the scanner reads into the padding behind `end`.
class XmlScanner {
public:
    enum class Event { open, empty, close, end, failed };

    XmlScanner(const char* begin, const char* end) : position_(begin), end_(end) {}
    explicit XmlScanner(const Slice& slice) : XmlScanner(slice.begin, slice.end) {}

    // Skips declaration and document type. Returns false on an error.
    bool prolog();

    // The next tag in element content. Skips comments and processing instructions.
    Event next();
    Tag tag() const { return tag_; }
    const char* tagBegin() const { return tagBegin_; }
    // Behind the last scanned token.
    const char* position() const { return position_; }

    // Scans the text of the scalar that was just opened, through its closing tag. Returns false on an error.
    bool text(XmlText& text);
    // Continues at `position`, behind elements that were recognised in another way.
    void moveTo(const char* position) { position_ = position; }
    // Skips the rest of the element that `event` opened, of any kind.
    void skipElement(Event event);

    Event fail(ReadFailure reason, const char* at);
    ReadFailure failure() const { return failure_; }
    const char* failedAt() const { return failedAt_; }

private:
    std::optional<Event> scanOddTag();
    Event scanOddClosingTag();
    std::nullptr_t refuse(ReadFailure reason, const char* at);
    Event failOutsideText(const char* at, ReadFailure reason);
    bool closeScalar(Tag opened, const char* at);

    // Each returns the position behind what it skipped, or nullptr on an error.
    const char* skipTagName(const char* p, bool (*ends)(char), ReadFailure unknown);
    const char* skipAttributeName(const char* p);
    const char* skipInsideScalar(const char* p);
    const char* skipReference(const char* p);
    const char* skipCharacter(const char* p);
    const char* skipAttributes(const char* p);
    const char* skipAttributeValue(const char* p);
    const char* skipCharacters(const char* p, std::string_view terminator);
    const char* skipComment(const char* p);
    const char* skipInstruction(const char* p);
    const char* skipDocumentType(const char* p);
    const char* skipDeclaration(const char* p);

    const char* position_;
    const char* end_;
    const char* tagBegin_ = nullptr;
    const char* failedAt_ = nullptr;
    Tag tag_ = Tag::plist;
    ReadFailure failure_ = ReadFailure::badMarkup;
};

// Returns the position behind the element name at p, nullptr when it is unknown. Does not check what follows the name.
inline const char* readTagName(const char* p, Tag& tag) {
    auto is = [&]<std::size_t size>(const char(&name)[size], Tag named) -> const char* {
        if (std::memcmp(p, name, size - 1) != 0) return nullptr;
        tag = named;
        return p + size - 1;
    };
    switch (*p) {
        case 'k':
            return is("key", Tag::key);
        case 's':
            return is("string", Tag::string);
        case 'd':
            if (p[1] == 'i') return is("dict", Tag::dict);
            return p[3] == 'e' ? is("date", Tag::date) : is("data", Tag::data);
        case 'a':
            return is("array", Tag::array);
        case 't':
            return is("true", Tag::yes);
        case 'f':
            return is("false", Tag::no);
        case 'i':
            return is("integer", Tag::integer);
        case 'r':
            return is("real", Tag::real);
        case 'p':
            return is("plist", Tag::plist);
        default:
            return nullptr;
    }
}

inline XmlScanner::Event XmlScanner::next() {
    for (;;) {
        const char* p = position_;
        while (isXmlSpace(*p)) ++p;
        position_ = tagBegin_ = p;
        if (*p == '<') {
            if (p[1] == '/') {
                const char* behind = readTagName(p + 2, tag_);
                if (!behind || *behind != '>') return scanOddClosingTag();
                position_ = behind + 1;
                return Event::close;
            }
            if (const char* behind = readTagName(p + 1, tag_)) {
                if (*behind == '>') {
                    position_ = behind + 1;
                    return Event::open;
                }
                if (*behind == '/' && behind[1] == '>') {
                    position_ = behind + 2;
                    return Event::empty;
                }
            }
        }
        if (std::optional<Event> event = scanOddTag()) return *event;
    }
}

inline bool XmlScanner::closeScalar(Tag opened, const char* at) {
    tagBegin_ = at;
    const char* behind = readTagName(at + 2, tag_);
    if (behind && *behind == '>')
        position_ = behind + 1;
    else if (scanOddClosingTag() == Event::failed)
        return false;
    if (tag_ == opened) return true;
    fail(ReadFailure::mismatchedTag, at);
    return false;
}

inline bool XmlScanner::text(XmlText& text) {
    Tag opened = tag_;
    const char* begin = position_;
    const char* p = begin;
    text.isPlain = true;
    while (p) {
        p = skipPlainText(p);
        if (*p == '<') {
            if (p[1] == '/') {
                text.raw = {begin, static_cast<std::size_t>(p - begin)};
                return closeScalar(opened, p);
            }
            text.isPlain = false;
            p = skipInsideScalar(p);
        } else if (*p == '&') {
            text.isPlain = false;
            p = skipReference(p);
        } else {
            p = isXmlSpace(*p) ? p + 1 : skipCharacter(p);
        }
    }
    return false;
}

inline void XmlScanner::skipElement(Event event) {
    if (event != Event::open) return;
    XmlText ignored;
    if (!isContainer(tag_)) {
        text(ignored);
        return;
    }
    for (std::size_t depth = 1; depth > 0;) {
        Event inside = next();
        if (inside == Event::close)
            --depth;
        else if (inside == Event::open && isContainer(tag_))
            ++depth;
        else if (inside == Event::open)
            text(ignored);
        else if (inside != Event::empty)
            return;
    }
}

}  // namespace store
