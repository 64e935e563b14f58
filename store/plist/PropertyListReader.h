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

// Where and why reading stopped. `byte` counts from 0 in the text, and in the file itself unless that is UTF-16, whose
// bytes it counts as UTF-8; `line` and `column` (in characters) count from 1 and are 0 for the binary form.
struct ReadError {
    ReadFailure reason;
    std::string message;
    std::size_t byte = 0;
    std::size_t line = 0;
    std::size_t column = 0;
};

using ReadResult = std::variant<Dictionary, ReadError>;

// A property list's outermost dictionary, from XML (see XmlReader.h for what is accepted) in UTF-8, or in UTF-16 with a
// byte-order mark, or from the binary form. A file that is wrong anywhere gives nothing but the error. A file that is
// handed over is kept no longer than it is needed. `index` may be nullptr.
ReadResult readPropertyList(Buffer file, std::shared_ptr<ElementIndex> index = nullptr);

// Whether a file that begins like this can be a property list: a quick no for what is something else altogether.
bool mayBePropertyList(std::string_view beginning);

const char* describe(ReadFailure reason);

}  // namespace store
