#pragma once

#include <string>

#include "store/Files.h"
#include "store/text/Utf.h"

namespace testing_support {

// The text of a log with a byte-order mark; a complaint when it is none.
inline std::string textOfLog(const std::filesystem::path& path) {
    const std::string bytes = store::contentOf(path);
    std::size_t malformedAt = 0;
    if (!bytes.starts_with("\xFF\xFE")) return "no mark: " + bytes;
    return store::utf8FromUtf16(std::string_view(bytes).substr(2), store::ByteOrder::little, malformedAt)
        .value_or("malformed at " + std::to_string(malformedAt));
}

}  // namespace testing_support
