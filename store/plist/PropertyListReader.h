#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "store/files/Buffer.h"
#include "store/plist/PropertyList.h"
#include "store/plist/ReadFailure.h"

namespace store {

// Reads a property list in memory, in any of its forms.

// The first error. `byte` is an offset in the file, or in its UTF-8 form where the file is UTF-16. `line` and `column`
// (in characters) count from 1; they are 0 for the binary form.
struct ReadError {
    ReadFailure reason;
    std::string message;
    std::size_t byte = 0;
    std::size_t line = 0;
    std::size_t column = 0;
};

using ReadResult = std::variant<Dictionary, ReadError>;

// The outermost dictionary of XML (see XmlReader.h for what is accepted) in UTF-8, of XML in UTF-16 with a byte-order
// mark, or of the binary form. An error anywhere makes the whole file an error. `file` is released as soon as it has
// been converted. `index` may be nullptr.
ReadResult readPropertyList(Buffer file, std::shared_ptr<ElementIndex> index = nullptr);

// False when a file with this beginning is certainly no property list: a cheap test before it is read.
bool mayBePropertyList(std::string_view beginning);

const char* describe(ReadFailure reason);

}  // namespace store
