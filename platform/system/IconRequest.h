#pragma once

#include <cstdint>

namespace platform {

// The request header of the process that renders SVG icons (platform/icons), followed by the bytes of the file, which
// may be gzip-compressed. The reply is side * side pixels of premultiplied ARGB32. If the data is not SVG, or exceeds
// the limits of time or memory, the process exits without a reply.
struct IconRequest {
    std::uint32_t side;    // pixels
    std::uint32_t length;  // bytes
};

}  // namespace platform
