#include "store/plist/XmlScanner.h"

#include <algorithm>

#include "store/text/Ascii.h"
#include "store/text/Search.h"

namespace store {

namespace {

bool startsWith(const char* p, std::string_view text) {
    return std::memcmp(p, text.data(), text.size()) == 0;
}

bool endsName(char c) {
    return isXmlSpace(c) || c == '/' || c == '>';
}

bool endsAttributeName(char c) {
    return endsName(c) || std::string_view("=<&\"'").find(c) != std::string_view::npos;
}

const char* skipSpace(const char* p) {
    while (isXmlSpace(*p)) ++p;
    return p;
}

// The encodings that a declaration may name. The text itself has been converted to UTF-8 by now.
bool isReadableEncoding(std::string_view name) {
    static constexpr std::string_view readable[] = {"utf-8",  "utf8",  "us-ascii", "ascii",
                                                    "utf-16", "utf16", "utf-16le", "utf-16be"};
    return std::ranges::find(readable, lowercase(name)) != std::end(readable);
}

}  // namespace

Kind kindOf(Tag tag) {
    switch (tag) {
        case Tag::plist:
        case Tag::dict:
            return Kind::dictionary;
        case Tag::array:
            return Kind::array;
        case Tag::yes:
        case Tag::no:
            return Kind::boolean;
        case Tag::date:
            return Kind::date;
        case Tag::data:
            return Kind::data;
        case Tag::integer:
            return Kind::integer;
        case Tag::real:
            return Kind::real;
        case Tag::key:
        case Tag::string:
            break;
    }
    return Kind::string;
}

XmlScanner::Event XmlScanner::fail(ReadFailure reason, const char* at) {
    failure_ = reason;
    failedAt_ = at;
    return Event::failed;
}

XmlScanner::Event XmlScanner::failAtCharacter(const char* at) {
    return failOutsideText(at, ReadFailure::illegalCharacter);
}

// Fails at a byte that is not allowed here: end of text, malformed UTF-8, a character that XML forbids, otherwise
// `reason`.
XmlScanner::Event XmlScanner::failOutsideText(const char* at, ReadFailure reason) {
    if (at == end_) return fail(ReadFailure::unexpectedEnd, at);
    Utf8Character found = decodeUtf8(at, end_);
    if (found.length == 0) return fail(ReadFailure::badEncoding, at);
    if (!isXmlCharacter(found.character)) return fail(ReadFailure::illegalCharacter, at);
    return fail(reason, at);
}

bool XmlScanner::prolog() {
    const char* p = position_;
    if (startsWith(p, "\xEF\xBB\xBF")) p += 3;
    p = skipSpace(p);
    if (startsWith(p, "<?xml") && (isXmlSpace(p[5]) || p[5] == '?')) p = skipDeclaration(p);
    bool hasDocumentType = false;
    while (p) {
        p = position_ = skipSpace(p);
        if (startsWith(p, "<!--")) {
            p = skipComment(p);
        } else if (startsWith(p, "<?")) {
            p = skipInstruction(p);
        } else if (!hasDocumentType && startsWith(p, "<!DOCTYPE")) {
            hasDocumentType = true;
            p = skipDocumentType(p);
        } else {
            return true;
        }
    }
    return false;
}

// The slow path of next(): everything but plain tags. Nothing when it skipped a comment or an instruction.
std::optional<XmlScanner::Event> XmlScanner::scanOddTag() {
    const char* p = tagBegin_;
    if (p == end_) return Event::end;
    if (*p != '<') return failOutsideText(p, ReadFailure::misplacedText);
    if (p[1] == '!' || p[1] == '?') {
        if (startsWith(p, "<![CDATA[")) return fail(ReadFailure::misplacedText, p);
        const char* behind = p[1] == '!' ? skipComment(p) : skipInstruction(p);
        if (!behind) return Event::failed;
        position_ = behind;
        return std::nullopt;
    }
    if (endsAttributeName(p[1])) return fail(ReadFailure::badMarkup, p);
    const char* behind = readTagName(p + 1, tag_);
    if (!behind || !endsName(*behind)) {
        const char* nameEnd = p + 1;
        while (nameEnd && !endsAttributeName(*nameEnd)) nameEnd = skipCharacter(nameEnd);
        return nameEnd ? fail(ReadFailure::unknownTag, p) : Event::failed;
    }
    behind = skipAttributes(behind);
    if (!behind) return Event::failed;
    bool isEmpty = *behind == '/';
    if (isEmpty) ++behind;
    if (*behind != '>') return failOutsideText(behind, ReadFailure::badMarkup);
    position_ = behind + 1;
    return isEmpty ? Event::empty : Event::open;
}

XmlScanner::Event XmlScanner::scanOddClosingTag() {
    const char* behind = readTagName(tagBegin_ + 2, tag_);
    if (!behind || !(isXmlSpace(*behind) || *behind == '>')) {
        const char* nameEnd = tagBegin_ + 2;
        while (nameEnd && !endsAttributeName(*nameEnd)) nameEnd = skipCharacter(nameEnd);
        return nameEnd ? fail(ReadFailure::mismatchedTag, tagBegin_) : Event::failed;
    }
    behind = skipSpace(behind);
    if (*behind != '>') return failOutsideText(behind, ReadFailure::badMarkup);
    position_ = behind + 1;
    return Event::close;
}

const char* XmlScanner::skipCharacter(const char* p) {
    Utf8Character next = decodeUtf8(p, end_);
    if (next.length > 0 && isXmlCharacter(next.character)) return p + next.length;
    failAtCharacter(p);
    return nullptr;
}

const char* XmlScanner::skipReference(const char* p) {
    XmlReference reference = readReference(p, end_);
    if (reference.end && isXmlCharacter(reference.character)) return reference.end;
    fail(reference.end ? ReadFailure::illegalCharacter : ReadFailure::unknownReference, p);
    return nullptr;
}

// `p` points at a '<' that does not begin a closing tag.
const char* XmlScanner::skipInsideScalar(const char* p) {
    if (p[1] == '?') return skipInstruction(p);
    if (startsWith(p, "<![CDATA[")) return skipCharacters(p + 9, "]]>");
    if (p[1] == '!') return skipComment(p);
    if (p + 1 == end_)
        fail(ReadFailure::unexpectedEnd, end_);
    else
        fail(ReadFailure::misplacedTag, p);
    return nullptr;
}

const char* XmlScanner::skipCharacters(const char* p, std::string_view terminator) {
    while (p) {
        if (*p == terminator.front() && startsWith(p, terminator)) return p + terminator.size();
        p = skipCharacter(p);
    }
    return nullptr;
}

const char* XmlScanner::skipAttributes(const char* p) {
    while (p) {
        const char* name = skipSpace(p);
        if (*name == '>' || *name == '/') return name;
        const char* nameEnd = name;
        while (nameEnd && !endsAttributeName(*nameEnd)) nameEnd = skipCharacter(nameEnd);
        if (!nameEnd) return nullptr;
        const char* equals = skipSpace(nameEnd);
        const char* quote = *equals == '=' ? skipSpace(equals + 1) : equals;
        bool isNamed = name != p && nameEnd != name;
        if (!isNamed || *equals != '=' || (*quote != '"' && *quote != '\'')) {
            failOutsideText(isNamed ? quote : name, ReadFailure::badMarkup);
            return nullptr;
        }
        p = skipAttributeValue(quote);
    }
    return nullptr;
}

const char* XmlScanner::skipAttributeValue(const char* p) {
    char quote = *p++;
    while (p && *p != quote) {
        if (*p == '<') {
            fail(ReadFailure::badMarkup, p);
            return nullptr;
        }
        p = *p == '&' ? skipReference(p) : skipCharacter(p);
    }
    return p ? p + 1 : nullptr;
}

const char* XmlScanner::skipComment(const char* p) {
    if (startsWith(p, "<!--")) return skipCharacters(p + 4, "-->");
    const char* odd = p + 2;
    while (*odd == '-') ++odd;
    fail(odd == end_ ? ReadFailure::unexpectedEnd : ReadFailure::badMarkup, odd == end_ ? end_ : p);
    return nullptr;
}

// An XML declaration anywhere but at the beginning is an error, not an instruction.
const char* XmlScanner::skipInstruction(const char* p) {
    const char* target = p + 2;
    bool isDeclaration = asciiLower(target[0]) == 'x' && asciiLower(target[1]) == 'm' && asciiLower(target[2]) == 'l' &&
                         (isXmlSpace(target[3]) || target[3] == '?');
    if (isDeclaration || isXmlSpace(*target) || *target == '?') {
        fail(ReadFailure::badMarkup, p);
        return nullptr;
    }
    return skipCharacters(target, "?>");
}

// Skips the document type; its declarations are ignored.
const char* XmlScanner::skipDocumentType(const char* p) {
    bool isInSubset = false;
    ++p;
    while (p) {
        if (*p == '>' && !isInSubset) return p + 1;
        if (*p == '"' || *p == '\'') {
            p = skipCharacters(p + 1, std::string_view(p, 1));
        } else if (startsWith(p, "<!--")) {
            p = skipComment(p);
        } else if (startsWith(p, "<?")) {
            p = skipInstruction(p);
        } else {
            if (*p == '[' || *p == ']') isInSubset = *p == '[';
            p = skipCharacter(p);
        }
    }
    return nullptr;
}

const char* XmlScanner::skipDeclaration(const char* p) {
    const char* behind = skipCharacters(p, "?>");
    if (!behind) return nullptr;
    std::string_view declaration(p, static_cast<std::size_t>(behind - p));
    constexpr std::string_view keyword = "encoding";
    std::size_t at = declaration.find(keyword);
    if (at == std::string_view::npos) return behind;
    const char* quote = skipSpace(p + at + keyword.size());
    if (*quote == '=') quote = skipSpace(quote + 1);
    const char* nameEnd = *quote == '"' || *quote == '\'' ? std::find(quote + 1, behind, *quote) : behind;
    if (nameEnd == behind) {
        fail(ReadFailure::badMarkup, quote);
        return nullptr;
    }
    if (isReadableEncoding({quote + 1, static_cast<std::size_t>(nameEnd - quote - 1)})) return behind;
    fail(ReadFailure::unsupportedEncoding, quote + 1);
    return nullptr;
}

}  // namespace store
