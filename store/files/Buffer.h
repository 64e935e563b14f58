#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace store {

// Immutable bytes with shared ownership. They are followed by `padding` bytes of 0, so that a scanner may read a little
// beyond the end instead of checking for the end at every step.
struct Buffer {
    static constexpr std::size_t padding = 64;

    std::shared_ptr<const char[]> bytes;
    std::size_t size = 0;

    std::string_view view() const { return {bytes.get(), size}; }

    static Buffer copyOf(std::string_view text);
    static Buffer adopt(std::string text);
};

// Memory for `size` bytes and the padding. Only the padding is initialised.
std::shared_ptr<char[]> allocateBytes(std::size_t size);

}  // namespace store
