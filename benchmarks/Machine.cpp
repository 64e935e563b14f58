#include "benchmarks/Machine.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>

namespace bench {

namespace {

// More than any of the programs that are measured needs, the pages of its files included.
constexpr std::size_t memoryInUse = std::size_t{768} << 20;
constexpr std::size_t pageSize = 4096;

void touchMemory() {
    void* memory = mmap(nullptr, memoryInUse, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return;
    madvise(memory, memoryInUse, MADV_HUGEPAGE);
    for (std::size_t at = 0; at < memoryInUse; at += pageSize) static_cast<volatile char*>(memory)[at] = 1;
    munmap(memory, memoryInUse);
}

}  // namespace

void settleMachine() {
    sync();
    touchMemory();
}

}  // namespace bench
