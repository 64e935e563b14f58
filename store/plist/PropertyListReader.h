#pragma once

#include <memory>
#include <string_view>

#include "store/files/Buffer.h"
#include "store/plist/XmlReader.h"

namespace store {

// Reads a property list in memory, in any of its forms.

// The outermost dictionary of XML (see XmlReader.h for what is accepted) in UTF-8, of XML in UTF-16 with a byte-order
// mark, or of the binary form. An error anywhere makes the whole file an error. `file` is released as soon as it has
// been converted. `index` may be nullptr.
ReadResult readPropertyList(Buffer file, std::shared_ptr<ElementIndex> index = nullptr);

// False when a file with this beginning is certainly no property list: a cheap test before it is read.
bool mayBePropertyList(std::string_view beginning);

}  // namespace store
