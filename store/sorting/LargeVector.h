#pragma once

#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace store {

// Leaves values that are not given uninitialized.
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

// For a million plain values. Touching much memory for the first time costs more than filling it, so none is touched
// before it is used. Huge pages are not asked for: where they are at hand they cost a fifth, but on a virtual machine
// that gives its free memory back they are what it gives back first, and cost four times as much.
template <class T>
using LargeVector = std::vector<T, UninitializedAllocator<T>>;

}  // namespace store
