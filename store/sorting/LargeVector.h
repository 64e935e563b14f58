#pragma once

#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace store {

// Default-initialises: resize() leaves the new elements of a plain type uninitialised.
template <class T>
class UninitializedAllocator : public std::allocator<T> {
    static_assert(std::is_trivially_destructible_v<T>);

public:
    UninitializedAllocator() = default;
    template <class U>
    UninitializedAllocator(const UninitializedAllocator<U>&) {}

    template <class U>
    void construct(U* at) noexcept {
        ::new (static_cast<void*>(at)) U;
    }
    template <class U, class... Arguments>
    void construct(U* at, Arguments&&... arguments) {
        std::construct_at(at, std::forward<Arguments>(arguments)...);
    }
};

// A vector for a million plain values. The page faults of a large block cost more than filling it, so resize() does not
// touch the memory. Huge pages are not requested: they make page faults five times as cheap where they are available,
// but four times as expensive on a virtual machine that returns free memory to its host.
template <class T>
using LargeVector = std::vector<T, UninitializedAllocator<T>>;

}  // namespace store
