#include "store/LargePages.h"

#include <sys/mman.h>

#include <cstdlib>

namespace store {

namespace {

constexpr std::size_t hugePage = std::size_t{2} << 20;
constexpr std::size_t worthwhile = hugePage / 2;

}  // namespace

void* allocateForLargePages(std::size_t bytes) {
    const bool isLarge = bytes >= worthwhile;
    const std::size_t alignment = isLarge ? hugePage : alignof(std::max_align_t);
    bytes = (bytes + alignment - 1) / alignment * alignment;
    void* memory = std::aligned_alloc(alignment, bytes);
    if (!memory) throw std::bad_alloc();
    if (isLarge) madvise(memory, bytes, MADV_HUGEPAGE);
    return memory;
}

void freeLargePages(void* memory) noexcept {
    std::free(memory);
}

}  // namespace store
