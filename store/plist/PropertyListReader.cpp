#include "store/plist/PropertyListReader.h"

#include <algorithm>
#include <utility>

#include "store/plist/BinaryPropertyList.h"
#include "store/plist/XmlReader.h"
#include "store/text/Utf.h"

namespace store {

namespace {

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

ReadError errorAt(ReadFailure reason, std::string_view text, std::size_t byte) {
    std::string_view before = text.substr(0, byte);
    std::size_t lineBegin = before.rfind('\n') + 1;
    std::string_view line = before.substr(lineBegin);
    return {reason, describe(reason), byte,
            1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')),
            1 + line.size() - static_cast<std::size_t>(std::count_if(line.begin(), line.end(), isContinuation))};
}

ReadResult readText(const Buffer& text, std::shared_ptr<ElementIndex> index) {
    auto result = readXml(text, std::move(index));
    if (auto* dictionary = std::get_if<Dictionary>(&result)) return std::move(*dictionary);
    XmlFailure failure = std::get<XmlFailure>(result);
    return errorAt(failure.reason, text.view(), static_cast<std::size_t>(failure.at - text.bytes.get()));
}

ReadResult readUtf16(Buffer file, ByteOrder order, std::shared_ptr<ElementIndex> index) {
    std::size_t malformedAt = 0;
    auto text = utf8FromUtf16(file.view(), order, malformedAt);
    file = {};
    if (text) return readText(Buffer::adopt(std::move(*text)), std::move(index));
    return ReadError{ReadFailure::badEncoding, describe(ReadFailure::badEncoding), malformedAt};
}

ReadResult readBinary(Buffer file, std::shared_ptr<ElementIndex> index) {
    auto result = xmlFromBinary(file.view());
    file = {};
    if (auto* text = std::get_if<Buffer>(&result)) return readText(*text, std::move(index));
    BinaryFailure failure = std::get<BinaryFailure>(result);
    return ReadError{failure.reason, describe(failure.reason), failure.byte};
}

}  // namespace

ReadResult readPropertyList(Buffer file, std::shared_ptr<ElementIndex> index) {
    std::string_view bytes = file.view();
    if (isBinaryPropertyList(bytes)) return readBinary(std::move(file), std::move(index));
    if (bytes.starts_with("\xFE\xFF")) return readUtf16(std::move(file), ByteOrder::big, std::move(index));
    if (bytes.starts_with("\xFF\xFE")) return readUtf16(std::move(file), ByteOrder::little, std::move(index));
    return readText(file, std::move(index));
}

bool mayBePropertyList(std::string_view beginning) {
    if (isBinaryPropertyList(beginning) || beginning.starts_with("\xFE\xFF") || beginning.starts_with("\xFF\xFE"))
        return true;
    std::size_t first = beginning.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    return first == std::string_view::npos || beginning[first] == '<';
}

const char* describe(ReadFailure reason) {
    switch (reason) {
        case ReadFailure::unexpectedEnd:
            return "the text ends too early";
        case ReadFailure::badEncoding:
            return "malformed UTF-8 or UTF-16";
        case ReadFailure::unsupportedEncoding:
            return "an encoding other than UTF-8 and UTF-16";
        case ReadFailure::illegalCharacter:
            return "a character that XML does not allow";
        case ReadFailure::badMarkup:
            return "malformed markup";
        case ReadFailure::unknownReference:
            return "an unknown entity";
        case ReadFailure::unknownTag:
            return "an unknown element";
        case ReadFailure::mismatchedTag:
            return "a closing tag that does not match";
        case ReadFailure::misplacedTag:
            return "an element where it may not stand";
        case ReadFailure::misplacedText:
            return "text where only elements may stand";
        case ReadFailure::keyWithoutValue:
            return "a key without a value";
        case ReadFailure::valueWithoutKey:
            return "a value without a key";
        case ReadFailure::noDictionary:
            return "the outermost value is no dictionary";
        case ReadFailure::secondRoot:
            return "something behind the outermost value";
        case ReadFailure::badDate:
            return "malformed date";
        case ReadFailure::badInteger:
            return "malformed integer";
        case ReadFailure::badReal:
            return "malformed real";
        case ReadFailure::badData:
            return "malformed Base64";
        case ReadFailure::badTrailer:
            return "malformed trailer";
        case ReadFailure::badOffset:
            return "an object outside the file";
        case ReadFailure::unsupportedObject:
            return "an object that has no XML form";
        case ReadFailure::containsItself:
            return "an object that contains itself";
        case ReadFailure::tooLarge:
            return "more text than such a file can mean";
    }
    return "";
}

}  // namespace store
