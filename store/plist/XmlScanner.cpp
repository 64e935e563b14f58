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
    static constexpr Kind kinds[] = {Kind::dictionary, Kind::dictionary, Kind::array,   Kind::string,
                                     Kind::string,     Kind::boolean,    Kind::boolean, Kind::date,
                                     Kind::data,       Kind::integer,    Kind::real};
    return kinds[static_cast<std::size_t>(tag)];
}

XmlScanner::Event XmlScanner::fail(ReadFailure reason, const char* at) {
    failure_ = reason;
    failedAt_ = at;
    return Event::failed;
}

std::nullptr_t XmlScanner::refuse(ReadFailure reason, const char* at) {
    fail(reason, at);
    return nullptr;
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
    const char* behind = skipTagName(p + 1, endsName, ReadFailure::unknownTag);
    if (behind) behind = skipAttributes(behind);
    if (!behind) return Event::failed;
    bool isEmpty = *behind == '/';
    if (isEmpty) ++behind;
    if (*behind != '>') return failOutsideText(behind, ReadFailure::badMarkup);
    position_ = behind + 1;
    return isEmpty ? Event::empty : Event::open;
}

XmlScanner::Event XmlScanner::scanOddClosingTag() {
    const auto endsClosingName = [](char c) { return isXmlSpace(c) || c == '>'; };
    const char* behind = skipTagName(tagBegin_ + 2, endsClosingName, ReadFailure::mismatchedTag);
    if (!behind) return Event::failed;
    behind = skipSpace(behind);
    if (*behind != '>') return failOutsideText(behind, ReadFailure::badMarkup);
    position_ = behind + 1;
    return Event::close;
}

const char* XmlScanner::skipTagName(const char* p, bool (*ends)(char), ReadFailure unknown) {
    const char* behind = readTagName(p, tag_);
    if (behind && ends(*behind)) return behind;
    return skipAttributeName(p) ? refuse(unknown, tagBegin_) : nullptr;
}

const char* XmlScanner::skipAttributeName(const char* p) {
    while (p && !endsAttributeName(*p)) p = skipCharacter(p);
    return p;
}

const char* XmlScanner::skipCharacter(const char* p) {
    Utf8Character next = decodeUtf8(p, end_);
    if (next.length > 0 && isXmlCharacter(next.character)) return p + next.length;
    failOutsideText(p, ReadFailure::illegalCharacter);
    return nullptr;
}

const char* XmlScanner::skipReference(const char* p) {
    XmlReference reference = readReference(p, end_);
    if (reference.end && isXmlCharacter(reference.character)) return reference.end;
    return refuse(reference.end ? ReadFailure::illegalCharacter : ReadFailure::unknownReference, p);
}

// `p` points at a '<' that does not begin a closing tag.
const char* XmlScanner::skipInsideScalar(const char* p) {
    if (p[1] == '?') return skipInstruction(p);
    if (startsWith(p, "<![CDATA[")) return skipCharacters(p + 9, "]]>");
    if (p[1] == '!') return skipComment(p);
    return p + 1 == end_ ? refuse(ReadFailure::unexpectedEnd, end_) : refuse(ReadFailure::misplacedTag, p);
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
        const char* nameEnd = skipAttributeName(name);
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
        if (*p == '<') return refuse(ReadFailure::badMarkup, p);
        p = *p == '&' ? skipReference(p) : skipCharacter(p);
    }
    return p ? p + 1 : nullptr;
}

const char* XmlScanner::skipComment(const char* p) {
    if (startsWith(p, "<!--")) return skipCharacters(p + 4, "-->");
    const char* odd = p + 2;
    while (*odd == '-') ++odd;
    return odd == end_ ? refuse(ReadFailure::unexpectedEnd, end_) : refuse(ReadFailure::badMarkup, p);
}

// An XML declaration anywhere but at the beginning is an error, not an instruction.
const char* XmlScanner::skipInstruction(const char* p) {
    const char* target = p + 2;
    bool isDeclaration = asciiLower(target[0]) == 'x' && asciiLower(target[1]) == 'm' && asciiLower(target[2]) == 'l' &&
                         (isXmlSpace(target[3]) || target[3] == '?');
    if (isDeclaration || isXmlSpace(*target) || *target == '?') return refuse(ReadFailure::badMarkup, p);
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
    if (nameEnd == behind) return refuse(ReadFailure::badMarkup, quote);
    if (isReadableEncoding({quote + 1, static_cast<std::size_t>(nameEnd - quote - 1)})) return behind;
    return refuse(ReadFailure::unsupportedEncoding, quote + 1);
}

}  // namespace store
