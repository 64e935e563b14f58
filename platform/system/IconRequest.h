#pragma once

#include <cstdint>

namespace platform {

// What is sent to the program that draws SVG icons (platform/icons), followed by the bytes of the file, which may be
// compressed. It answers with side * side pixels, premultiplied ARGB32, and waits for the next request. It ends instead
// of answering when the bytes are no picture or when drawing them takes more time or memory than an icon may.
struct IconRequest {
    std::uint32_t side;    // pixels
    std::uint32_t length;  // bytes
};

}  // namespace platform
