#pragma once

#include <cstddef>
#include <string_view>
#include <variant>

#include "store/files/Buffer.h"
#include "store/plist/ReadFailure.h"

namespace store {

struct BinaryFailure {
    ReadFailure reason;
    std::size_t byte;  // of the object or number that is wrong
};

bool isBinaryPropertyList(std::string_view bytes);

// The binary form ("bplist00") said in XML, as the writer would write it, so that everything behind it has one form to
// deal with. Nothing in the file is trusted: offsets, counts and references are checked, an object that contains
// itself is an error, and so is one that would unfold to more than six times the file (or 1 MB, if that is more).
std::variant<Buffer, BinaryFailure> xmlFromBinary(std::string_view bytes);

}  // namespace store
