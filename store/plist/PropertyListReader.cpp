#include "store/plist/PropertyListReader.h"

#include <optional>
#include <string>
#include <utility>

#include "store/plist/BinaryPropertyList.h"
#include "store/text/Utf.h"

namespace store {

namespace {

// Nothing when the bytes do not begin with the byte-order mark of UTF-16.
std::optional<ByteOrder> utf16Order(std::string_view bytes) {
    if (bytes.starts_with("\xFE\xFF")) return ByteOrder::big;
    if (bytes.starts_with("\xFF\xFE")) return ByteOrder::little;
    return std::nullopt;
}

// The file as XML in UTF-8.
std::variant<Buffer, ReadError> xmlOf(Buffer file) {
    if (isBinaryPropertyList(file.view())) return xmlFromBinary(file.view());
    const std::optional<ByteOrder> order = utf16Order(file.view());
    if (!order) return file;
    std::size_t malformedAt = 0;
    std::optional<std::string> text = utf8FromUtf16(file.view(), *order, malformedAt);
    if (!text) return ReadError{ReadFailure::badEncoding, malformedAt};
    return Buffer::adopt(*std::move(text));
}

}  // namespace

ReadResult readPropertyList(Buffer file, std::shared_ptr<ElementIndex> index) {
    const std::variant<Buffer, ReadError> xml = xmlOf(std::move(file));
    if (const auto* error = std::get_if<ReadError>(&xml)) return *error;
    return readXml(std::get<Buffer>(xml), std::move(index));
}

bool mayBePropertyList(std::string_view beginning) {
    if (isBinaryPropertyList(beginning) || utf16Order(beginning)) return true;
    std::size_t first = beginning.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    return first == std::string_view::npos || beginning[first] == '<';
}

}  // namespace store
