#pragma once

#include <string_view>
#include <variant>

#include "store/files/Buffer.h"
#include "store/plist/ReadFailure.h"

namespace store {

// Converts binary property lists to XML.

bool isBinaryPropertyList(std::string_view bytes);

// Converts the binary form ("bplist00") to XML as XmlWriter writes it, so that all other code handles one form. The
// file is not trusted: offsets, counts and references are checked; cycles are an error, and so is output of more than
// six times the size of the file (or 1 MB, if that is more), which shared objects could produce.
std::variant<Buffer, ReadError> xmlFromBinary(std::string_view bytes);

}  // namespace store
