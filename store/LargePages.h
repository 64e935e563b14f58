#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace store {

// Memory that is given back with std::free(); throws std::bad_alloc. Touching much memory for the first time costs more
// than filling it, page by page: large blocks are laid out for huge pages, a few hundred of which are cheaper than tens
// of thousands of small ones. Where the system has none, nothing is lost.
void* allocateForLargePages(std::size_t bytes);
void freeLargePages(void* memory) noexcept;

// For vectors of a million plain values: memory of that kind, in which values that are not given stay uninitialized.
template <class T>
class LargePages {
    static_assert(std::is_trivially_destructible_v<T>);

public:
    using value_type = T;

    LargePages() = default;
    template <class U>
    LargePages(const LargePages<U>&) {}

    T* allocate(std::size_t count) { return static_cast<T*>(allocateForLargePages(count * sizeof(T))); }
    void deallocate(T* memory, std::size_t) noexcept { freeLargePages(memory); }

    template <class U>
    void construct(U* at) noexcept {
        ::new (static_cast<void*>(at)) U;
    }
    template <class U, class... Arguments>
    void construct(U* at, Arguments&&... arguments) {
        std::construct_at(at, std::forward<Arguments>(arguments)...);
    }

    bool operator==(const LargePages&) const = default;
};

template <class T>
using LargeVector = std::vector<T, LargePages<T>>;

}  // namespace store
