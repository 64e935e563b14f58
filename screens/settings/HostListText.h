#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace screens {

// The text of a host list file in UTF-8, with every space removed.
//
// A byte-order mark decides (UTF-8, UTF-16 or UTF-32, in either byte order); what is malformed in that encoding is no
// text. Without a mark the file is UTF-8 if all of it is valid UTF-8, and otherwise Windows-1252, where every byte is a
// character. A file without a mark that holds a byte 0 is no text either.
std::optional<std::string> hostListText(std::string_view bytes);

}  // namespace screens
