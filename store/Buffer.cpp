#include "store/Buffer.h"

#include <sys/mman.h>

#include <cstdlib>
#include <cstring>
#include <new>

namespace store {

namespace {

constexpr std::size_t hugePage = std::size_t{2} << 20;

}  // namespace

std::shared_ptr<char[]> allocateBytes(std::size_t size) {
    std::size_t wanted = size + Buffer::padding;
    bool isLarge = wanted >= 4 * hugePage;
    std::size_t alignment = isLarge ? hugePage : alignof(std::max_align_t);
    wanted = (wanted + alignment - 1) / alignment * alignment;
    auto* bytes = static_cast<char*>(std::aligned_alloc(alignment, wanted));
    if (!bytes) throw std::bad_alloc();
    // Touching a large buffer for the first time costs more than filling it, page by page; a few hundred large pages
    // are cheaper than tens of thousands of small ones. Where the system has none, nothing is lost.
    if (isLarge) madvise(bytes, wanted, MADV_HUGEPAGE);
    std::memset(bytes + size, 0, Buffer::padding);
    return std::shared_ptr<char[]>(bytes, [](char* p) { std::free(p); });
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
