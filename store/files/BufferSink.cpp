#include "store/files/BufferSink.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace store {

void BufferSink::write(std::string_view bytes) {
    if (bytes.empty()) return;
    reserve(size_ + bytes.size() + Buffer::padding);
    std::memcpy(bytes_.get() + size_, bytes.data(), bytes.size());
    size_ += bytes.size();
}

Buffer BufferSink::take() {
    reserve(size_ + Buffer::padding);
    std::memset(bytes_.get() + size_, 0, Buffer::padding);
    capacity_ = 0;
    return {std::shared_ptr<const char[]>(bytes_.release(), Release()), std::exchange(size_, 0)};
}

// Pages of the capacity that were never written take no memory.
void BufferSink::reserve(std::size_t capacity) {
    if (capacity <= capacity_) return;
    capacity = std::max(capacity, capacity_ + capacity_ / 2);
    auto* bytes = static_cast<char*>(std::realloc(bytes_.get(), capacity));
    if (!bytes) throw std::bad_alloc();
    static_cast<void>(bytes_.release());
    bytes_.reset(bytes);
    capacity_ = capacity;
}

}  // namespace store
