#include "store/files/Buffer.h"

#include <cstring>

namespace store {

std::shared_ptr<char[]> allocateBytes(std::size_t size) {
    auto bytes = std::make_shared_for_overwrite<char[]>(size + Buffer::padding);
    std::memset(bytes.get() + size, 0, Buffer::padding);
    return bytes;
}

Buffer Buffer::copyOf(std::string_view text) {
    auto bytes = allocateBytes(text.size());
    if (!text.empty()) std::memcpy(bytes.get(), text.data(), text.size());
    return {bytes, text.size()};
}

Buffer Buffer::adopt(std::string text) {
    std::size_t size = text.size();
    text.append(padding, '\0');
    auto owner = std::make_shared<const std::string>(std::move(text));
    return {std::shared_ptr<const char[]>(owner, owner->data()), size};
}

}  // namespace store
